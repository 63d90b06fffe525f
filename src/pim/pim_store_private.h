// What the parts of the store share. Only sources of the store include this header.
#pragma once
#include "pim/item_cache.h"
#include "pim/pim_store.h"
#include "util/string_ids.h"
#include "util/string_store.h"

struct CPimStore::Private {
    void RearmTimer();
    int Digest(const std::vector<CVolumeChange>& changes);

    CCategoryStore Categories;
    CItemCache Cache{Categories};
    std::shared_ptr<CPropertyVolume> Volume;
    std::function<void(qint64)> SetNextEvent;
    IItemTransport* Transport = nullptr;
    DATE CursorDate = NO_DATE;
    qint64 LastChange = 0;
};

// A stored item without a subject reads as "No subject": that is not written back to it.
template <typename Item> void PutSubject(Item& target, const QString& subject, bool isNew)
{
    if (isNew || !target.get_Subject().isEmpty() || subject != GetString(StringId::StrNoSubject))
        target.put_Subject(subject);
}

// For a series that is to be deleted. First: the occurrence; Second: the series.
IWriterQuestions::Choice AskDeleteSeries(IWriterQuestions& questions);
