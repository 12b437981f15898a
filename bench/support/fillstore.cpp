#include "support/fillstore.h"

#include <algorithm>

void fillAsRead(Datastore &store, int count, const std::function<std::shared_ptr<Record>(int)> &makeRecordAt)
{
    constexpr int block = 5000;
    for (int first = 0; first < count; first += block) {
        std::vector<std::shared_ptr<Record>> records;
        std::vector<SpectrumRecord> entries;
        for (int i = first; i < std::min(first + block, count); ++i) {
            records.push_back(makeRecordAt(i));
            for (const auto &spectrum : records.back()->spectra)
                entries.push_back({records.back(), spectrum, 0});
        }
        store.mergeRecords(std::move(records));
        store.enterSpectra(std::move(entries));
    }
    store.updateIndexes();
}
