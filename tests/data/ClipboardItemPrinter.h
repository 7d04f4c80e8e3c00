#pragma once

#include "data/ClipboardItem.h"

#include <gtest/gtest.h>
#include <ostream>

namespace navro {

// Readable test failures: an entry as its fields.
inline void PrintTo(const ClipboardItem& item, std::ostream* out)
{
    *out << "{" << item.id << " " << rawValue(item.kind) << " " << testing::PrintToString(item.text)
         << " image=" << item.imageFile.value_or("-") << " source=" << item.sourceApp.value_or("-")
         << " date=" << item.date.time_since_epoch().count() << "}";
}

} // namespace navro
