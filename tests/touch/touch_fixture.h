// A clock that stands still, pauses that only count, and a client that writes down what it is told.
#pragma once
#include <QString>
#include <QStringList>
#include <gtest/gtest.h>
#include <vector>

#include "drawing/screen_metrics.h"
#include "platform/clock.h"
#include "touch/i_touch_client.h"
#include "touch/numbered_timers.h"
#include "touch/timer_ids.h"
#include "touch/touch_navigator.h"

class CRecordingClient : public ITouchClient
{
public:
    int RenderContent(quint32, QPainter&, quint32, int scroll, int, int) override
    {
        ++Renders;
        LastScroll = scroll;
        return ContentHeight;
    }
    bool OnPress(quint32, int x, int y) override
    {
        Calls << QStringLiteral("press %1,%2").arg(x).arg(y);
        return true;
    }
    void OnDragStart(quint32) override { Calls << QStringLiteral("drag"); }
    void OnTap(quint32, int x, int y) override { Calls << QStringLiteral("tap %1,%2").arg(x).arg(y); }
    QString Story() const { return Calls.join(QStringLiteral("; ")); }

    int ContentHeight = 1000, Renders = 0, LastScroll = 0;
    QStringList Calls;
};

class CTouchTest : public testing::Test
{
protected:
    void SetUp() override
    {
        SetClock(&Time);
        SetPause([this](int milliseconds) { Pauses.push_back(milliseconds); });
        g_ScreenMetrics.Init(96, {240, 320});
    }
    void TearDown() override
    {
        SetPause({});
        SetClock(nullptr);
        g_ScreenMetrics.Init(96, {240, 320});
    }
    CManualClock Time;
    std::vector<int> Pauses;
};
