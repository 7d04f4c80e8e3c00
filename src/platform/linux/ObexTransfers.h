#pragma once

#include "system/TransferSources.h"

#include <memory>

namespace navro {

class BusObjects;

// Files sent and received over Bluetooth, from BlueZ's OBEX service on the session bus.
class ObexTransfers final : public WirelessTransferSource {
public:
    ObexTransfers();
    ~ObexTransfers() override;
    void start(Changed changed) override;

private:
    void report();

    std::unique_ptr<BusObjects> objects_;
    Changed changed_;
};

} // namespace navro
