// The form of an appointment, of one occurrence of a series, or of the series.
// It holds a copy: what other processes do to the item meanwhile meets it only in the writer.
#pragma once
#include "editors/item_editor.h"
#include "object_model/object_model.h"
#include "pim/items.h"

#include <vector>

class CAppointmentEditor : public CItemEditor
{
public:
    // A new one. Without a time the date starts at the hour of the settings; `end` NO_DATE: by the
    // settings' duration.
    CAppointmentEditor(DATE date, bool hasTime, DATE end = NO_DATE, const QString& category = QString());
    // What CPimStore::GetEditTarget gave; `day` names the occurrence.
    CAppointmentEditor(IPOutlookApp& app, IAppointment& target, int day, bool onlyOccurrence);
    const CAppointment& GetItem() const { return m_item; }

protected:
    CPimItem& Item() override { return m_item; }
    DATE PatternDate() override { return m_item.Start; }
    void InitRows() override;
    bool FillChoices(quint32 id, QStringList& list) override;
    void ExchangeText(quint32 id, QString& text, bool set) override;
    void ExchangeDate(quint32 id, DATE& date, bool set) override;
    void ExchangeChoice(quint32 id, int& index, bool set) override;
    void GetLinkText(quint32 id, QString& text) override;
    void OnLinkTapped(quint32 id) override;
    bool Save() override;

private:
    void SeedEnd();
    void ExchangeAllDay(int& index, bool set);
    void ExchangeReminder(int& index, bool set);

    CAppointment m_item;
    int m_day;
    bool m_onlyOccurrence = false, m_attendeesChanged = false, m_customReminder = false;
    std::vector<CAttendee> m_attendees;
};
