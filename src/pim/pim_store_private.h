// What the parts of the store share. Only sources of the store include this header.
#pragma once
#include "pim/item_cache.h"
#include "pim/pim_store.h"

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

// For a series that is to be deleted. First: the occurrence; Second: the series.
IWriterQuestions::Choice AskDeleteSeries(IWriterQuestions& questions);
