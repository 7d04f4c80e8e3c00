#pragma once

#include "app/Clock.h"
#include "system/DeviceNotices.h"
#include "system/DeviceSources.h"

#include <QObject>
#include <QVariantList>
#include <map>
#include <memory>
#include <set>

namespace navro {

class AppSettings;

// The machine's devices for the Devices tab and the menu panel: batteries and the charger,
// Bluetooth devices, removable drives, USB devices and displays, each from its own source. A
// source the system lacks leaves its section empty. Changes after the first list of a source
// become notices on the closed notch (while devicesInNotch is on); the state found at start is
// not news.
class DeviceMonitor : public QObject {
    Q_OBJECT
    Q_PROPERTY(QVariantList batteries READ batteries NOTIFY batteriesChanged)
    Q_PROPERTY(bool onCharger READ onCharger NOTIFY batteriesChanged)
    Q_PROPERTY(QVariantList bluetooth READ bluetooth NOTIFY bluetoothChanged)
    Q_PROPERTY(QVariantList drives READ drives NOTIFY drivesChanged)
    Q_PROPERTY(QVariantList usb READ usb NOTIFY usbChanged)
    Q_PROPERTY(QVariantList displays READ displays NOTIFY displaysChanged)

public:
    struct Sources {
        PowerSource* power = nullptr;
        BluetoothSource* bluetooth = nullptr;
        DriveSource* drives = nullptr;
        UsbSource* usb = nullptr;
    };
    using Notify = std::function<void(const DeviceNotice&)>;

    DeviceMonitor(Clock& clock, const AppSettings& settings, Sources sources, Notify notify,
                  QObject* parent = nullptr);
    ~DeviceMonitor() override;

    // Starts every source; each reports when it is ready.
    void start();
    // The screens as the window system reports them, at start and on every change.
    void setDisplays(std::vector<Display> displays);

    QVariantList batteries() const;
    bool onCharger() const { return power_ && power_->onCharger; }
    QVariantList bluetooth() const;
    QVariantList drives() const;
    QVariantList usb() const;
    QVariantList displays() const;
    // The first internal battery, for the menu panel: none without one.
    std::optional<Battery> internalBattery() const;

    // Unmounts and powers off; the drive's status says "ejecting", then "busy" or "failed" when
    // the system refused (a program still uses it), until its next change.
    Q_INVOKABLE void eject(const QString& id);
    Q_INVOKABLE void connectDevice(const QString& id);
    Q_INVOKABLE void disconnectDevice(const QString& id);

signals:
    void batteriesChanged();
    void bluetoothChanged();
    void drivesChanged();
    void usbChanged();
    void displaysChanged();

private:
    void applyPower(const std::optional<PowerSupply>& supply);
    void applyBluetooth(const std::optional<std::vector<BluetoothDevice>>& devices);
    void applyDrives(const std::optional<std::vector<Drive>>& drives);
    void applyUsb(const std::optional<std::vector<UsbDevice>>& devices);
    void say(const DeviceNotice& notice);
    void sayBurst(const std::vector<DeviceEvent>& events);
    void setDriveStatus(const std::string& id, QString status);
    void setConnected(const std::string& id, bool connected);
    void setBluetoothPending(const std::string& id, bool pending);

    const AppSettings& settings_;
    Sources sources_;
    Notify notify_;
    DeviceEventBurst burst_;
    PowerNoticeRule powerRule_;
    std::optional<PowerSupply> power_;
    std::optional<std::vector<BluetoothDevice>> bluetooth_;
    std::optional<std::vector<Drive>> drives_;
    std::optional<std::vector<UsbDevice>> usb_;
    std::optional<std::vector<Display>> displays_;
    std::map<std::string, QString> driveStatus_;
    std::set<std::string> bluetoothPending_;
};

} // namespace navro
