#pragma once

#include "system/DeviceSources.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace navro {

// A folder the transfer monitor watches for browsers' partial files. Changes of its entries, and
// writes to the files named by watchFiles, are reported through `changed` on this thread.
class WatchedFolder {
public:
    virtual ~WatchedFolder() = default;
    // False when the folder cannot be watched (missing); nothing is reported then.
    virtual bool start(std::function<void()> changed) = 0;
    virtual std::vector<std::string> names() const = 0;
    // None when the entry is not a regular file (any more).
    virtual std::optional<std::uint64_t> size(const std::string& name) const = 0;
    // Writes to these files count as changes too (the folder itself only tells of new names).
    virtual void watchFiles(const std::vector<std::string>& names) = 0;
    virtual std::string path() const = 0;
};

// A file sent or received over Bluetooth, as the OBEX service reports it.
struct WirelessTransfer {
    enum class Status { queued, active, suspended, complete, error };
    std::string id;
    std::string name;
    std::string fileName; // where it is written, when known
    std::uint64_t bytes = 0;
    std::optional<std::uint64_t> total;
    Status status = Status::queued;
    bool operator==(const WirelessTransfer&) const = default;
};

using WirelessTransferSource = DeviceSource<std::vector<WirelessTransfer>>;

} // namespace navro
