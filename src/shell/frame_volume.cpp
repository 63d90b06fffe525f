// What the frame does when the volume's file is taken away from under it.
#include "records/property_numbers.h"
#include "settings/settings.h"
#include "shell/main_frame.h"
#include "forms/question.h"
#include "touch/wait_cursor.h"
#include "util/string_ids.h"
#include "util/string_store.h"

#include <QDateTime>
#include <QFileInfo>
#include <utility>

// The file is opened once it has stayed the same from one poll to the next: it may be being copied.
void CMainFrame::OnVolumeDisplaced()
{
    if (!m_up || IsBusy() || !m_setup.Volume || m_setup.Volume->IsInPlace())
        return; // the next poll asks again
    const QString path = m_setup.Volume->Path();
    const QFileInfo file(path);
    const QString gone = FillText(GetString(StrVolumeGone), {path});
    if (!file.exists()) {
        m_displacedStamp.clear();
        m_setup.Volume->SetAsideLog();
        return TellOfVolume(gone);
    }
    const QString stamp = QString::number(file.size()) + u' ' +
                          QString::number(file.lastModified().toMSecsSinceEpoch());
    if (std::exchange(m_displacedStamp, stamp) != stamp || file.size() == 0)
        return;
    m_setup.Volume->SetAsideLog();
    std::shared_ptr<CPropertyVolume> volume;
    const CStatus opened =
        CPropertyVolume::Open(path, PimSchema(), CPropertyVolume::Mode::MustExist, volume);
    if (!opened)
        return TellOfVolume(opened.Text());
    ShowVolume(std::move(volume));
    if (std::exchange(m_toldOfVolume, {}) != gone)
        ShowMessage(this, FillText(GetString(StrVolumeReplaced), {path}), GetString(StrProgramTitle));
}

void CMainFrame::TellOfVolume(const QString& text)
{
    if (m_toldOfVolume == text)
        return;
    m_toldOfVolume = text;
    ShowMessage(this, text, GetString(StrErrorCaption));
}

void CMainFrame::ShowVolume(std::shared_ptr<CPropertyVolume> volume)
{
    CWaitCursor wait;
    const DATE cursor = PimStore().CursorDate();
    const int filter = g_Settings.m_currentFilterIndex;
    m_notices.reset();
    PimStore().Shutdown();
    m_setup.Volume = std::move(volume);
    OpenStore();
    g_Settings.SetActiveFilter(filter);
    PimStore().LoadRange(cursor, DayNumber(cursor), DayNumber(cursor));
    for (const auto& view : m_views)
        view->OnDataChanged(0, 0, 0);
    if (CCalendarView* view = CurrentView())
        view->Refresh();
    StartNotices();
}
