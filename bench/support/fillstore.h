#pragma once

#include "store/datastore.h"

#include <functional>
#include <memory>

/// Appends records, made with their spectra, as reading a folder does: in blocks of some thousand, each merged into the
/// records and into every series at once.
void fillAsRead(Datastore &store, int count, const std::function<std::shared_ptr<Record>(int)> &makeRecordAt);
