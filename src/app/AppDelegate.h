#pragma once

#include "app/AppEvents.h"
#include "app/BackgroundRunner.h"
#include "app/MenuBarActions.h"
#include "app/MenuPanelPlacement.h"
#include "app/QtClock.h"
#include "app/RemoteControl.h"
#include "app/StatusItemClick.h"

#include <QObject>
#include <QSystemTrayIcon>
#include <memory>

class QApplication;
class QQmlApplicationEngine;
class QScreen;

namespace navro {

class AboutInfo;
class ActivityCenter;
class AdhanAlert;
class BackgroundQueue;
class CalendarFetcher;
class CalendarService;
class AppActions;
class AppNotices;
class AppSettings;
class AudioBars;
class AudioOutputControl;
class ArtworkDownloader;
class CaptureService;
class ClipboardHistoryModel;
class ClipboardStore;
class DesktopEntries;
class DesktopFiles;
class DeviceMonitor;
class DriveSource;
class BluetoothSource;
class DesktopNotifier;
class FrontmostApplication;
class HotKey;
class LaunchAtLogin;
class NotchViewModel;
class NotchWindowController;
class NotesStore;
class NowPlayingService;
class NowPlayingWatcher;
class OnboardingFinish;
class PanelWindowSystem;
class Pasteboard;
class PlayerApplications;
class PrayerService;
class PulseAudioConnection;
class SystemBusGate;
class SystemTimeEvents;
class ScreenGrabber;
class ScreenRecorder;
class IniSettingsStore;
class QmlWindowHost;
class Shell;
class ShelfStore;
class SleepPreventer;
class SoundPlayer;
class SystemAudio;
class SystemVolume;
class TimerService;
class SystemStats;
class TransferMonitor;
class WatchedFolder;
template <typename Snapshot> class DeviceSource;
struct PowerSupply;
struct UsbDevice;
struct WirelessTransfer;
class UpdateChecker;
class UsageStatistics;
class WhatsNew;

// The one composition root: builds every long-lived object in start-up order, wires them
// together, hands them to the views, and winds them down at the end.
class AppDelegate final : public QObject, public RemoteControl, private StatusItemHost {
    Q_OBJECT

public:
    explicit AppDelegate(QApplication& application);
    ~AppDelegate() override;

    // The start-up sequence. Nothing in it waits: services that work in the background start it
    // and return.
    void start();
    // Before the process ends, by the quit action or a termination signal alike.
    void shutdown();

    // Raises AppEvents::showOnboardingRequested, whose answer closes the notch and the menu
    // panel and shows onboarding.
    void showOnboarding() override { events_.requestOnboarding(); }
    void showSettings(const QString& page);

    // RemoteControl
    void open(bool focus) override;
    void close() override;
    void toggle() override;
    RemoteRefusal openSettings(const QString& page) override;
    RemoteRefusal openTab(const QString& tab) override;
    RemoteState remoteState() const override;
    RemoteTimer remoteTimer() const override;
    RemoteRefusal startTimer(double minutes, bool focus) override;
    void stopTimer() override;
    std::optional<RemoteNowPlaying> remoteNowPlaying() const override
    {
        return nowPlayingSnapshot_;
    }
    RemoteRefusal takeScreenshot(const QString& mode) override;
    RemoteRefusal startRecording(const QString& mode) override;
    void stopRecording() override;
    std::optional<RemoteNextPrayer> remoteNextPrayer() const override;
    std::optional<RemoteNextMeeting> remoteNextMeeting() const override;
    RemoteVolume remoteVolume() const override;
    void setVolume(double volume) override;
    void toggleMute() override;
    RemoteRefusal selectOutput(const QString& name) override;
    QVariantMap remoteDevices() const override;

private:
    // StatusItemHost
    bool hasCompletedOnboarding() const override;
    void closeNotch() override;
    bool isMenuPanelShown() const override;
    void closeMenuPanel() override;
    void showMenuPanel(const QRect& anchor) override;

    void presentOnboarding();
    MenuBarActions menuBarActions();
    void setUpEngine();
    void finishStart();
    void setUpStatusItem();
    void setUpHotKey();
    void finishOnboarding();
    void publishState();
    void startNowPlaying();
    void startCapture();
    void startCalendar();
    BackgroundRunner runInBackground();
    void noteNowPlayingChanged();
    void startSound();
    void startTransfers();
    void startDevices();
    void publishDisplays(QScreen* leaving = nullptr);
    void noteNotchOpened();
    void returnOpenViewMemory();
    void buildApplicationServices();
    void startApplicationServices();
    void countUsage();
    bool notchPanelVisible() const;

    QApplication& application_;
    QtClock clock_;
    AppEvents events_;
    // Outlives everything that uses the system bus.
    std::unique_ptr<SystemBusGate> systemBus_;
    std::unique_ptr<IniSettingsStore> store_;
    std::unique_ptr<AppSettings> settings_;
    std::unique_ptr<QQmlApplicationEngine> engine_;
    std::unique_ptr<QmlWindowHost> settingsWindow_;
    std::unique_ptr<QmlWindowHost> menuPanel_;
    std::unique_ptr<QmlWindowHost> onboarding_;
    std::unique_ptr<QmlWindowHost> whatsNewWindow_;
    std::unique_ptr<LaunchAtLogin> launchAtLogin_;
    std::unique_ptr<SystemTimeEvents> timeEvents_;
    std::unique_ptr<DesktopNotifier> notifier_;
    std::unique_ptr<PrayerService> prayer_;
    std::unique_ptr<DesktopEntries> desktopEntries_;
    std::unique_ptr<PlayerApplications> playerApplications_;
    std::unique_ptr<NowPlayingWatcher> nowPlayingWatcher_;
    std::unique_ptr<ArtworkDownloader> artworkDownloader_;
    std::unique_ptr<NowPlayingService> nowPlaying_;
    std::optional<RemoteNowPlaying> nowPlayingSnapshot_;
    // Reading that would hold up the main thread (history files, calendars), one job at a time.
    std::unique_ptr<BackgroundQueue> backgroundQueue_;
    std::unique_ptr<Pasteboard> pasteboard_;
    std::unique_ptr<FrontmostApplication> frontmost_;
    std::unique_ptr<ClipboardStore> clipboard_;
    std::unique_ptr<ClipboardHistoryModel> clipboardHistory_;
    std::unique_ptr<ActivityCenter> activityCenter_;
    std::unique_ptr<PulseAudioConnection> soundServer_;
    std::unique_ptr<SystemAudio> systemAudio_;
    std::unique_ptr<AudioBars> audioBars_;
    std::unique_ptr<AudioOutputControl> audioOutputs_;
    std::unique_ptr<SystemVolume> volume_;
    std::unique_ptr<Shell> shell_;
    std::unique_ptr<SleepPreventer> sleepPreventer_;
    std::unique_ptr<SoundPlayer> sound_;
    std::unique_ptr<TimerService> timer_;
    std::unique_ptr<CalendarFetcher> calendarFetcher_;
    std::unique_ptr<CalendarService> calendar_;
    std::unique_ptr<NotesStore> notes_;
    std::unique_ptr<DesktopFiles> desktopFiles_;
    std::unique_ptr<ShelfStore> shelf_;
    std::unique_ptr<ScreenGrabber> screenGrabber_;
    std::unique_ptr<ScreenRecorder> screenRecorder_;
    std::unique_ptr<CaptureService> capture_;
    std::unique_ptr<AdhanAlert> adhanAlert_;
    std::unique_ptr<WatchedFolder> downloadsFolder_;
    std::unique_ptr<DeviceSource<std::vector<WirelessTransfer>>> wirelessTransfers_;
    std::unique_ptr<TransferMonitor> transfers_;
    std::string finishedToastId_;
    QString finishedPath_;
    std::unique_ptr<DeviceSource<PowerSupply>> powerSource_;
    std::unique_ptr<BluetoothSource> bluetoothSource_;
    std::unique_ptr<DriveSource> driveSource_;
    std::unique_ptr<DeviceSource<std::vector<UsbDevice>>> usbSource_;
    std::unique_ptr<DeviceMonitor> devices_;
    std::unique_ptr<SystemStats> systemStats_;
    std::unique_ptr<NotchViewModel> notchModel_;
    std::unique_ptr<PanelWindowSystem> panelWindowSystem_;
    std::unique_ptr<NotchWindowController> notch_;
    std::unique_ptr<AppActions> actions_;
    std::unique_ptr<AppNotices> notices_;
    std::unique_ptr<QSystemTrayIcon> statusItem_;
    std::unique_ptr<HotKey> hotKey_;
    std::unique_ptr<OnboardingFinish> onboardingFinish_;
    std::unique_ptr<RemoteControlPublisher> remote_;
    std::unique_ptr<AboutInfo> about_;
    std::unique_ptr<UpdateChecker> updates_;
    std::unique_ptr<WhatsNew> whatsNew_;
    std::unique_ptr<UsageStatistics> usage_;
    QString lastCountedTab_;
    PopupDismissal menuDismissal_;
    bool isShutDown_ = false;
};

} // namespace navro
