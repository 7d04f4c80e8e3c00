#pragma once

#include "system/DeviceSources.h"

#include <map>

namespace navro {

// Sources whose lists the test hands over; asked-for actions wait until the test answers them.
template <typename Base, typename Snapshot> class FakeSourceOf : public Base {
public:
    void start(typename Base::Changed changed) override { changed_ = std::move(changed); }
    void report(const std::optional<Snapshot>& snapshot) { changed_(snapshot); }
    bool started() const { return bool(changed_); }

private:
    typename Base::Changed changed_;
};

using FakePowerSource = FakeSourceOf<PowerSource, PowerSupply>;
using FakeUsbSource = FakeSourceOf<UsbSource, std::vector<UsbDevice>>;

class FakeDriveSource final : public FakeSourceOf<DriveSource, std::vector<Drive>> {
public:
    void eject(const std::string& id, std::function<void(EjectOutcome)> done) override
    {
        ejects[id] = std::move(done);
    }
    std::map<std::string, std::function<void(EjectOutcome)>> ejects;
};

class FakeBluetoothSource final
    : public FakeSourceOf<BluetoothSource, std::vector<BluetoothDevice>> {
public:
    void setConnected(const std::string& id, bool connected,
                      std::function<void(bool)> done) override
    {
        requests.emplace_back(id, connected);
        answer = std::move(done);
    }
    std::vector<std::pair<std::string, bool>> requests;
    std::function<void(bool)> answer;
};

} // namespace navro
