#include "app/AppDelegate.h"

#include "app/AppActions.h"
#include "app/AppNotices.h"
#include "app/AppSettings.h"
#include "app/BackgroundQueue.h"
#include "app/DesktopNotifier.h"
#include "app/FileAccess.h"
#include "app/FreeHeap.h"
#include "app/HotKey.h"
#include "app/IconImageProvider.h"
#include "app/IniSettingsStore.h"
#include "app/LaunchAtLogin.h"
#include "app/Log.h"
#include "app/OnboardingFinish.h"
#include "app/QmlWindowHost.h"
#include "app/Shell.h"
#include "app/SoundPlayer.h"
#include "app/ThemeIconProvider.h"
#include "app/Version.h"
#include "calendar/CalendarService.h"
#include "data/CaptureService.h"
#include "data/ClipboardHistoryModel.h"
#include "data/ClipboardImageProvider.h"
#include "data/ClipboardStore.h"
#include "data/DesktopFiles.h"
#include "data/FrontmostApplication.h"
#include "data/NotesStore.h"
#include "data/Pasteboard.h"
#include "data/ScreenCapture.h"
#include "data/ShelfStore.h"
#include "data/SleepPreventer.h"
#include "data/TimerPhase.h"
#include "data/TimerService.h"
#include "media/ArtworkDownloader.h"
#include "media/AudioBars.h"
#include "media/NowPlayingImageProvider.h"
#include "media/NowPlayingService.h"
#include "media/SystemVolume.h"
#include "notch/ActivityCenter.h"
#include "notch/NotchViewModel.h"
#include "notch/NotchWindowController.h"
#include "notch/PanelWindowSystem.h"
#include "platform/linux/BlueZDevices.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/DesktopPlayerApplications.h"
#include "platform/linux/LinuxSystemTimeEvents.h"
#include "platform/linux/NowPlayingHelper.h"
#include "platform/linux/ObexTransfers.h"
#include "platform/linux/PulseAudioConnection.h"
#include "platform/linux/PulseAudioOutputs.h"
#include "platform/linux/RevealInFolder.h"
#include "platform/linux/SystemAudioTap.h"
#include "platform/linux/SystemBusGate.h"
#include "platform/linux/UDisks2Drives.h"
#include "platform/linux/UPowerSource.h"
#include "platform/linux/UdevUsbDevices.h"
#include "prayer/AdhanAlert.h"
#include "prayer/PrayerService.h"
#include "services/AboutInfo.h"
#include "services/DeviceIdentifier.h"
#include "services/UpdateChecker.h"
#include "services/UsageStatistics.h"
#include "services/WhatsNew.h"
#include "system/DeviceMonitor.h"
#include "system/QtWatchedFolder.h"
#include "system/SystemStats.h"
#include "system/TransferMonitor.h"

#include <QApplication>
#include <QDateTime>
#include <QFile>
#include <QGuiApplication>
#include <QIcon>
#include <QPainter>
#include <QPointer>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickWindow>
#include <QScreen>
#include <QStandardPaths>
#include <QSvgRenderer>
#include <QTimer>

namespace navro {
namespace {

QUrl view(const char* file)
{
    return QUrl(QStringLiteral("qrc:/Navro/") + QLatin1String(file));
}

// Navro's own mark, the application icon: a blue screen with the black notch, in a dark frame.
// It carries its contrast with it, so it reads on light panels (by the frame) and dark ones (by
// the blue) alike, whatever the theme.
QIcon applicationIcon()
{
    QSvgRenderer mark(QStringLiteral(":/views/navro.svg"));
    QIcon icon;
    for (int size : {16, 22, 24, 32, 48, 64, 128}) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        mark.render(&painter);
        painter.end();
        icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}

} // namespace

AppDelegate::AppDelegate(QApplication& application)
    : application_(application),
      // The probe starts now and answers while the rest starts.
      systemBus_(std::make_unique<SystemBusGate>(SystemBusGate::defaultAddress(),
                                                 std::chrono::seconds(2))),
      store_(std::make_unique<IniSettingsStore>(clock_, IniSettingsStore::defaultPath())),
      settings_(std::make_unique<AppSettings>(*store_, &AppSettings::systemPreferredLanguages)),
      engine_(std::make_unique<QQmlApplicationEngine>())
{
    // The three window controllers exist from the start; none of their windows is built or
    // shown until it is first asked for.
    settingsWindow_ = std::make_unique<QmlWindowHost>(*engine_, view("SettingsWindow.qml"));
    menuPanel_ = std::make_unique<QmlWindowHost>(*engine_, view("MenuBarPanel.qml"));
    onboarding_ = std::make_unique<QmlWindowHost>(*engine_, view("OnboardingWindow.qml"));
    launchAtLogin_ = std::make_unique<LaunchAtLogin>(makeSystemLoginItem());
}

AppDelegate::~AppDelegate()
{
    shutdown();
    // The views go before the objects they read.
    menuPanel_.reset();
    onboarding_.reset();
    whatsNewWindow_.reset();
    settingsWindow_.reset();
    notch_.reset();
    engine_.reset();
}

void AppDelegate::start()
{
    QPointer<AppDelegate> self(this);

    timeEvents_ = std::make_unique<LinuxSystemTimeEvents>(*systemBus_);
    prayer_ = std::make_unique<PrayerService>(*settings_, clock_, *timeEvents_);
    startNowPlaying();
    pasteboard_ = makeSystemPasteboard();
    frontmost_ = makeFrontmostApplication();
    backgroundQueue_ = std::make_unique<BackgroundQueue>(/*held=*/true);
    clipboard_ = std::make_unique<ClipboardStore>(*settings_, clock_, *pasteboard_, *frontmost_,
                                                  dataFolder(), runInBackground());
    clipboard_->start();
    clipboardHistory_ = std::make_unique<ClipboardHistoryModel>(*clipboard_);
    activityCenter_ = std::make_unique<ActivityCenter>(clock_, *settings_);
    timeEvents_->addHandler(
        [this](SystemTimeEvents::Event) { activityCenter_->noteClockChanged(); });
    startCapture();
    connect(prayer_.get(), &PrayerService::prayerChanged, activityCenter_.get(),
            &ActivityCenter::notePrayerChanged);
    connect(clipboard_.get(), &ClipboardStore::copiedBack, activityCenter_.get(), [this] {
        // The notch closes on a copy from its history; the closed notch confirms it.
        const bool arabic = settings_->isArabic();
        activityCenter_->showToast(
            ActivityCenter::makeToast("doc.on.clipboard", arabic ? "نُسخ" : "Copied", ""), 1.5);
    });
    startSound();
    shell_ = std::make_unique<Shell>();
    sleepPreventer_ = makeSleepPreventer();
    sound_ = makeSoundPlayer();
    timer_ = std::make_unique<TimerService>(*settings_, clock_, *sleepPreventer_, *sound_, *shell_,
                                            dataFolder() / "Shortcuts");
    connect(timer_.get(), &TimerService::stateChanged, activityCenter_.get(),
            [this] { activityCenter_->setTimerState(timer_->state()); });
    notifier_ = makeDesktopNotifier();
    startCalendar();
    notes_ = std::make_unique<NotesStore>(clock_, *settings_, *timeEvents_, *notifier_);
    shelf_ = std::make_unique<ShelfStore>(clock_, *settings_, *desktopFiles_, dataFolder());
    adhanAlert_ = std::make_unique<AdhanAlert>(
        *prayer_, *settings_, clock_, *notifier_, *sound_,
        [this](const std::string& title, const std::string& detail, double seconds) {
            activityCenter_->showToast(ActivityCenter::makeToast("moon", title, detail), seconds);
        });
    startTransfers();
    startDevices();
    connect(nowPlaying_.get(), &NowPlayingService::infoChanged, activityCenter_.get(), [this] {
        const auto& info = nowPlaying_->info();
        activityCenter_->setPlaybackRate(info ? std::optional(info->rate) : std::nullopt);
    });
    notchModel_ = std::make_unique<NotchViewModel>(clock_, *settings_);
    notchModel_->mirror(*activityCenter_);
    connect(notchModel_.get(), &NotchViewModel::statusChanged, this, &AppDelegate::noteNotchOpened);
    // After the next frame, which is when the scene graph nodes of the views let go of are freed;
    // unless the views are wanted again by then.
    connect(notchModel_.get(), &NotchViewModel::openViewWantedChanged, this, [this] {
        if (notchModel_->openViewWanted() || !notch_)
            return;
        notch_->afterNextFrame([this] {
            if (!notchModel_->openViewWanted())
                returnOpenViewMemory();
        });
    });
    buildApplicationServices();

    setUpEngine();

    panelWindowSystem_ = makePanelWindowSystem();
    notch_ = std::make_unique<NotchWindowController>(
        *notchModel_, *settings_, *engine_, *panelWindowSystem_, view("NotchRootView.qml"));
    notch_->onRecordingPressed = [self] {
        if (self)
            self->stopRecording();
    };
    notchModel_->onOpenSettings = [self] {
        if (self)
            self->showSettings(QStringLiteral("general"));
    };

    // The actions of the menu-bar panel (and of the other windows), handed to the views.
    AppActions::Callbacks callbacks;
    callbacks.menu = menuBarActions();
    callbacks.finishOnboarding = [self] {
        if (self)
            self->finishOnboarding();
    };
    callbacks.showOnboarding = [self] {
        if (self)
            self->events_.requestOnboarding();
    };
    callbacks.openSettingsPage = [self](const QString& page) {
        if (self)
            self->showSettings(page);
    };
    actions_ = std::make_unique<AppActions>(std::move(callbacks), launchAtLogin_.get());
    engine_->rootContext()->setContextProperty(QStringLiteral("app"), actions_.get());

    // What the closed notch does not need waits until it is on screen.
    notch_->afterNextFrame([self] {
        if (self)
            self->finishStart();
    });
}

// The rest of start-up, in its order: the histories and calendars read, the status item and the hot
// key, onboarding, the application services, and the control interface on the bus.
void AppDelegate::finishStart()
{
    QPointer<AppDelegate> self(this);
    backgroundQueue_->release();
    setUpStatusItem();
    setUpHotKey();

    OnboardingFinish::Steps demonstration;
    demonstration.isPanelVisible = [self] { return self && self->notchPanelVisible(); };
    demonstration.openWithoutFocus = [self] {
        if (self)
            self->notchModel_->open(false, false);
    };
    demonstration.close = [self] {
        if (self)
            self->notchModel_->close();
    };
    onboardingFinish_ = std::make_unique<OnboardingFinish>(clock_, std::move(demonstration));

    connect(&events_, &AppEvents::showOnboardingRequested, this, &AppDelegate::presentOnboarding);
    connect(menuPanel_.get(), &QmlWindowHost::deactivated, this, [this] {
        // A panel of the tray item closes when the user turns elsewhere.
        if (menuPanel_->isShown()) {
            menuPanel_->close();
            menuDismissal_.noteDismissed(clock_.now());
        }
    });

    if (!settings_->hasCompletedOnboarding())
        presentOnboarding();
    startApplicationServices();

    remote_ = publishRemoteControl(*this);
    for (auto signal : {&NotchViewModel::statusChanged, &NotchViewModel::selectedTabChanged,
                        &NotchViewModel::activityChanged})
        connect(notchModel_.get(), signal, this, &AppDelegate::publishState);
    connect(settings_.get(), &AppSettings::notchEnabledChanged, this, &AppDelegate::publishState);
    connect(settings_.get(), &AppSettings::isArabicChanged, this, &AppDelegate::publishState);
    connect(notch_.get(), &NotchWindowController::visibilityChanged, this,
            &AppDelegate::publishState);
    connect(timer_.get(), &TimerService::stateChanged, this, [this] {
        if (remote_)
            remote_->timerChanged();
    });
    publishState();
    connect(prayer_.get(), &PrayerService::prayerChanged, this, [this] {
        if (remote_)
            remote_->nextPrayerChanged();
    });
    connect(calendar_.get(), &CalendarService::nextMeetingChanged, this, [this] {
        if (remote_)
            remote_->nextMeetingChanged();
    });
    connect(nowPlaying_.get(), &NowPlayingService::infoChanged, this,
            &AppDelegate::noteNowPlayingChanged);
    noteNowPlayingChanged();
    connect(volume_.get(), &SystemVolume::changed, this, [this] {
        if (remote_)
            remote_->volumeChanged();
    });
    const auto devicesChanged = [this] {
        if (remote_)
            remote_->devicesChanged();
    };
    for (auto signal : {&DeviceMonitor::batteriesChanged, &DeviceMonitor::bluetoothChanged,
                        &DeviceMonitor::drivesChanged, &DeviceMonitor::usbChanged,
                        &DeviceMonitor::displaysChanged})
        connect(devices_.get(), signal, this, devicesChanged);
    connect(transfers_.get(), &TransferMonitor::transfersChanged, this, devicesChanged);
}

BackgroundRunner AppDelegate::runInBackground()
{
    return
        [queue = backgroundQueue_.get()](std::function<void()> work, std::function<void()> then) {
            queue->run(std::move(work), std::move(then));
        };
}

void AppDelegate::startCalendar()
{
    calendarFetcher_ = std::make_unique<HttpCalendarFetcher>();
    calendar_ = std::make_unique<CalendarService>(
        *settings_, clock_, *timeEvents_, *calendarFetcher_, runInBackground(),
        // Evolution keeps its calendars in the same data home as ours.
        CalendarService::Folders{dataFolder() / "Calendars", dataFolder().parent_path()});
    connect(calendar_.get(), &CalendarService::nextMeetingChanged, activityCenter_.get(),
            [this] { activityCenter_->setNextMeeting(calendar_->nextMeeting()); });
    calendar_->start();
}

void AppDelegate::startCapture()
{
    desktopFiles_ = makeDesktopFiles();
    screenGrabber_ = makeScreenGrabber();
    screenRecorder_ = makeScreenRecorder();
    capture_ =
        std::make_unique<CaptureService>(clock_, *settings_, *screenGrabber_, *screenRecorder_,
                                         *desktopFiles_, CaptureService::defaultFolders());
    connect(capture_.get(), &CaptureService::isRecordingChanged, activityCenter_.get(),
            [this] { activityCenter_->setRecording(capture_->isRecording()); });
    connect(capture_.get(), &CaptureService::imageForClipboard, clipboard_.get(),
            &ClipboardStore::putImage);
    connect(capture_.get(), &CaptureService::filesForClipboard, clipboard_.get(),
            &ClipboardStore::putFiles);
    connect(
        capture_.get(), &CaptureService::saved, activityCenter_.get(), [this](CaptureKind kind) {
            const bool arabic = settings_->isArabic();
            const bool screenshot = kind == CaptureKind::screenshot;
            const char* title = screenshot ? (arabic ? "تم حفظ لقطة الشاشة" : "Screenshot saved")
                                           : (arabic ? "تم حفظ التسجيل" : "Recording saved");
            activityCenter_->showToast(
                ActivityCenter::makeToast(screenshot ? "camera" : "video", title, ""), 3);
        });
}

// Built before the views see them; nothing of theirs runs before startApplicationServices.
void AppDelegate::buildApplicationServices()
{
    about_ = std::make_unique<AboutInfo>(deviceIdentifier(machineIdFiles),
                                         QCoreApplication::applicationDirPath());
    const auto version = applicationVersion();
    updates_ = std::make_unique<UpdateChecker>(
        *settings_, clock_, QUrl(QStringLiteral(NAVRO_UPDATE_FEED_URL)), version);
    QFile notes(QStringLiteral(":/services/ReleaseNotes.json"));
    notes.open(QIODevice::ReadOnly);
    whatsNew_ = std::make_unique<WhatsNew>(
        *settings_, parseReleaseNotes(notes.readAll().toStdString()), version);
    usage_ = std::make_unique<UsageStatistics>(*settings_, clock_,
                                               QUrl(QStringLiteral(NAVRO_USAGE_STATS_URL)),
                                               dataFolder() / "usage.json", version);
}

// The last step of start-up: the updater, what's new after an update, the usage statistics.
void AppDelegate::startApplicationServices()
{
    updates_->start();
    // Onboarding comes first; the version is recorded either way.
    if (whatsNew_->checkAtStart() && settings_->hasCompletedOnboarding()) {
        whatsNewWindow_ = std::make_unique<QmlWindowHost>(*engine_, view("WhatsNewWindow.qml"));
        whatsNewWindow_->show();
    }
    usage_->start();
    countUsage();
}

// Which tabs are opened and which features are used; the service drops them unless it collects.
void AppDelegate::countUsage()
{
    auto countTab = [this] {
        if (!notchModel_->isOpen()) {
            lastCountedTab_.clear();
            return;
        }
        // Opening and choosing the tab may come as two changes; the tab is counted once.
        const QString tab = notchModel_->selectedTabRaw();
        if (tab != lastCountedTab_)
            usage_->noteTabOpened(tab);
        lastCountedTab_ = tab;
    };
    connect(notchModel_.get(), &NotchViewModel::statusChanged, usage_.get(), countTab);
    connect(notchModel_.get(), &NotchViewModel::selectedTabChanged, usage_.get(), countTab);
    connect(clipboard_.get(), &ClipboardStore::copiedBack, usage_.get(),
            [this] { usage_->noteFeatureUsed(QStringLiteral("clipboardCopyBack")); });
    connect(timer_.get(), &TimerService::stateChanged, usage_.get(),
            [this, previous = timer_->stateRaw()]() mutable {
                const QString state = timer_->stateRaw();
                if (state == QLatin1String("running") && previous != QLatin1String("paused"))
                    usage_->noteFeatureUsed(timer_->isFocus() ? QStringLiteral("focusSession")
                                                              : QStringLiteral("timer"));
                previous = state;
            });
}

void AppDelegate::startNowPlaying()
{
    desktopEntries_ = std::make_unique<DesktopEntries>();
    playerApplications_ = std::make_unique<DesktopPlayerApplications>(*desktopEntries_);
    nowPlayingWatcher_ = std::make_unique<NowPlayingHelper>();
    artworkDownloader_ = std::make_unique<HttpArtworkDownloader>();
    nowPlaying_ = std::make_unique<NowPlayingService>(clock_, *settings_, *nowPlayingWatcher_,
                                                      *playerApplications_, *artworkDownloader_);
    nowPlaying_->start();
}

// The audio bars, then the system volume, on one connection to the sound server.
void AppDelegate::startSound()
{
    soundServer_ = std::make_unique<PulseAudioConnection>();
    systemAudio_ = std::make_unique<PulseSystemAudio>(*soundServer_);
    audioBars_ = std::make_unique<AudioBars>(clock_, *settings_, *systemAudio_);
    connect(nowPlaying_.get(), &NowPlayingService::infoChanged, audioBars_.get(),
            [this] { audioBars_->setPlaying(nowPlaying_->isPlaying()); });
    audioBars_->setPlaying(nowPlaying_->isPlaying());
    audioOutputs_ = std::make_unique<PulseAudioOutputs>(*soundServer_);
    volume_ = std::make_unique<SystemVolume>(*audioOutputs_);
}

// The bus shows the track as it was at its last change, with the position of that moment.
void AppDelegate::noteNowPlayingChanged()
{
    const auto& info = nowPlaying_->info();
    if (!info) {
        nowPlayingSnapshot_.reset();
    } else {
        nowPlayingSnapshot_ = RemoteNowPlaying{nowPlaying_->title(), nowPlaying_->artist(),
                                               nowPlaying_->album(), nowPlaying_->appName(),
                                               info->rate > 0,       nowPlaying_->elapsedNow(),
                                               info->duration};
    }
    if (remote_)
        remote_->nowPlayingChanged();
}

MenuBarActions AppDelegate::menuBarActions()
{
    // Held weakly, like every callback handed out: a button pressed while the delegate goes away
    // does nothing.
    QPointer<AppDelegate> self(this);
    MenuBarActions actions;
    actions.openNotch = [self] {
        if (!self)
            return;
        // On even when the notch cannot open right now (no screen for it).
        self->settings_->setNotchEnabled(true);
        if (self->notchPanelVisible())
            self->notchModel_->open(false, true);
    };
    actions.openSettings = [self] {
        if (self)
            self->showSettings(QStringLiteral("general"));
    };
    actions.openAbout = [self] {
        if (self)
            self->showSettings(QStringLiteral("about"));
    };
    actions.quit = [] { QCoreApplication::quit(); };
    return actions;
}

// Downloads in the user's downloads folder and files received over Bluetooth. A finished one is
// told on the closed notch; a click on that notice shows the file in its folder.
void AppDelegate::startTransfers()
{
    downloadsFolder_ = std::make_unique<QtWatchedFolder>(
        QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
    wirelessTransfers_ = std::make_unique<ObexTransfers>();
    transfers_ =
        std::make_unique<TransferMonitor>(clock_, downloadsFolder_.get(), wirelessTransfers_.get());
    connect(transfers_.get(), &TransferMonitor::transfersChanged, activityCenter_.get(),
            [this] { activityCenter_->setTransfersInProgress(!transfers_->isEmpty()); });
    connect(transfers_.get(), &TransferMonitor::finished, this,
            [this](const QString& name, const QString& path, bool overBluetooth) {
                if (!settings_->transfersInNotch())
                    return;
                const bool arabic = settings_->isArabic();
                // Bluetooth transfers go both ways: "download" would be wrong for a sent file.
                const char* title =
                    overBluetooth
                        ? (arabic ? "اكتمل النقل عبر بلوتوث" : "Bluetooth transfer finished")
                        : (arabic ? "اكتمل التنزيل" : "Download finished");
                Toast toast =
                    ActivityCenter::makeToast(overBluetooth ? "bluetooth" : "arrow.down.circle",
                                              title, name.toStdString(), 0x34C759);
                finishedToastId_ = toast.id;
                finishedPath_ = path;
                activityCenter_->showToast(std::move(toast), 3);
            });
    transfers_->start();
}

// What the open notch's views leave behind once they are gone: their JavaScript garbage, the
// compiled types nothing else uses, and the free pages of the heap. A loader deletes the view it
// lets go of as a later event; any such deletion still waiting is done first. Trimming a heap
// this size takes the main thread up to 30 ms, too long to do while the notch is in use.
void AppDelegate::returnOpenViewMemory()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    engine_->collectGarbage();
    engine_->trimComponentCache();
    returnFreeHeapToSystem();
}

void AppDelegate::noteNotchOpened()
{
    if (!notchModel_->isOpen() || notchModel_->openedByHover() || finishedToastId_.empty())
        return;
    const auto& shown = activityCenter_->current();
    const Toast* toast = shown ? shown->toast() : nullptr;
    if (toast && toast->id == finishedToastId_) {
        // The click was on the notice of a finished download: its file rather than the tabs.
        finishedToastId_.clear();
        notchModel_->close();
        revealInFolder(finishedPath_);
    }
}

// Batteries, Bluetooth, drives, USB devices and displays; their changes become notices.
void AppDelegate::startDevices()
{
    powerSource_ = std::make_unique<UPowerSource>(*systemBus_);
    bluetoothSource_ = std::make_unique<BlueZDevices>(*systemBus_);
    driveSource_ = std::make_unique<UDisks2Drives>(*systemBus_);
    usbSource_ = std::make_unique<UdevUsbDevices>();
    DeviceMonitor::Sources sources{powerSource_.get(), bluetoothSource_.get(), driveSource_.get(),
                                   usbSource_.get()};
    devices_ = std::make_unique<DeviceMonitor>(
        clock_, *settings_, sources, [this](const DeviceNotice& notice) {
            activityCenter_->showToast(
                ActivityCenter::makeToast(notice.symbol, notice.title, notice.detail, notice.tint),
                3);
        });
    devices_->start();
    // The menu panel's figures: read only while the panel is on screen.
    systemStats_ = std::make_unique<SystemStats>(clock_, SystemStats::procReader());
    connect(menuPanel_.get(), &QmlWindowHost::shownChanged, systemStats_.get(),
            [this] { systemStats_->setShown(menuPanel_->isShown()); });
    auto* application = qGuiApp;
    connect(application, &QGuiApplication::screenAdded, this, [this](QScreen* screen) {
        connect(screen, &QScreen::geometryChanged, this, [this] { publishDisplays(); });
        publishDisplays();
    });
    connect(application, &QGuiApplication::screenRemoved, this,
            [this](QScreen* leaving) { publishDisplays(leaving); });
    for (QScreen* screen : QGuiApplication::screens())
        connect(screen, &QScreen::geometryChanged, this, [this] { publishDisplays(); });
    publishDisplays();
}

void AppDelegate::publishDisplays(QScreen* leaving)
{
    std::vector<Display> displays;
    for (QScreen* screen : QGuiApplication::screens()) {
        if (screen == leaving)
            continue;
        // The resolution in the display's own pixels, as its settings name it.
        const QSize size = screen->geometry().size() * screen->devicePixelRatio();
        QString name = screen->model().trimmed();
        if (name.isEmpty())
            name = screen->name();
        displays.push_back({name.toStdString(), size.width(), size.height()});
    }
    devices_->setDisplays(std::move(displays));
}

void AppDelegate::setUpEngine()
{
    notices_ = std::make_unique<AppNotices>();
    notices_->setSettingsSaveProblem(store_->saveProblem());
    connect(store_.get(), &IniSettingsStore::saveProblemChanged, notices_.get(),
            [this] { notices_->setSettingsSaveProblem(store_->saveProblem()); });

    engine_->addImageProvider(QStringLiteral("icon"), new IconImageProvider);
    QQmlContext* context = engine_->rootContext();
    context->setContextProperty(QStringLiteral("notices"), notices_.get());
    context->setContextProperty(QStringLiteral("settings"), settings_.get());
    context->setContextProperty(QStringLiteral("notch"), notchModel_.get());
    context->setContextProperty(QStringLiteral("activityCenter"), activityCenter_.get());
    context->setContextProperty(QStringLiteral("prayer"), prayer_.get());
    context->setContextProperty(QStringLiteral("clipboard"), clipboard_.get());
    context->setContextProperty(QStringLiteral("clipboardHistory"), clipboardHistory_.get());
    engine_->addImageProvider(QStringLiteral("clipboard"),
                              new ClipboardImageProvider(clipboard_->imagesFolder()));
    context->setContextProperty(QStringLiteral("timerService"), timer_.get());
    context->setContextProperty(QStringLiteral("notes"), notes_.get());
    context->setContextProperty(QStringLiteral("shelf"), shelf_.get());
    context->setContextProperty(QStringLiteral("capture"), capture_.get());
    engine_->addImageProvider(QStringLiteral("themeicon"), new ThemeIconProvider);
    context->setContextProperty(QStringLiteral("calendar"), calendar_.get());
    context->setContextProperty(QStringLiteral("nowPlaying"), nowPlaying_.get());
    context->setContextProperty(QStringLiteral("audioBars"), audioBars_.get());
    context->setContextProperty(QStringLiteral("systemVolume"), volume_.get());
    context->setContextProperty(QStringLiteral("transfers"), transfers_.get());
    context->setContextProperty(QStringLiteral("devices"), devices_.get());
    context->setContextProperty(QStringLiteral("systemStats"), systemStats_.get());
    context->setContextProperty(QStringLiteral("about"), about_.get());
    context->setContextProperty(QStringLiteral("updates"), updates_.get());
    context->setContextProperty(QStringLiteral("whatsNew"), whatsNew_.get());
    context->setContextProperty(QStringLiteral("usageStatistics"), usage_.get());
    engine_->addImageProvider(QStringLiteral("nowplaying"),
                              new NowPlayingImageProvider(nowPlaying_->images()));
}

void AppDelegate::setUpStatusItem()
{
    const QIcon icon = applicationIcon();
    QApplication::setWindowIcon(icon);
    statusItem_ = std::make_unique<QSystemTrayIcon>(icon);
    statusItem_->setToolTip(QStringLiteral("Navro"));
    connect(statusItem_.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                // Left and right buttons alike. The second click of a quick pair arrives as
                // DoubleClick instead of Trigger; it is still one click of its own.
                if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::Context ||
                    reason == QSystemTrayIcon::DoubleClick)
                    statusItemClicked(*this, statusItem_->geometry());
            });
    statusItem_->show();
}

void AppDelegate::setUpHotKey()
{
    QPointer<AppDelegate> self(this);
    HotKeyGrab grab = makeHotKey(Qt::Key_L, Qt::ControlModifier | Qt::AltModifier, [self] {
        if (!self)
            return;
        self->toggle();
        if (self->usage_)
            self->usage_->noteFeatureUsed(QStringLiteral("hotKey"));
    });
    hotKey_ = std::move(grab.hotKey);
    // Said once while it lasts; the settings window shows it with the way round it.
    if (grab.takenByAnother && !notices_->hotKeyTaken())
        logLine("Ctrl+Alt+L is taken by another program, so it does not open the notch; the bus's "
                "Toggle does (see navro --help)");
    else if (hotKey_ && notices_->hotKeyTaken())
        logLine("Ctrl+Alt+L is free again and opens the notch");
    notices_->setHotKeyTaken(grab.takenByAnother);
}

void AppDelegate::shutdown()
{
    if (isShutDown_)
        return;
    isShutDown_ = true;
    // First, so that ffmpeg finishes the file of a running recording while there is time.
    if (capture_)
        capture_->shutDown();
    if (onboardingFinish_)
        onboardingFinish_->interrupt();
    if (nowPlaying_)
        nowPlaying_->stop();
    if (audioBars_)
        audioBars_->shutDown();
    // The timer ends its session (the focus-off action included) and lets the display sleep.
    // The preventer itself goes with the delegate, waiting briefly until the desktop has its
    // hold back.
    if (timer_)
        timer_->shutDown();
    // Then what other programs can see goes: the bus name, the key grab, the tray item.
    remote_.reset();
    hotKey_.reset();
    if (statusItem_)
        statusItem_->hide();
    // The last keystrokes of the note are still waiting for their write.
    if (notes_)
        notes_->flushPendingSave();
    if (usage_)
        usage_->flush();
    if (store_)
        store_->saveNow();
}

void AppDelegate::presentOnboarding()
{
    closeNotch();
    closeMenuPanel();
    onboarding_->show();
}

void AppDelegate::showSettings(const QString& page)
{
    // The user may have freed the key meanwhile; the window tells whether it is Navro's now.
    if (!hotKey_ && notices_->hotKeyTaken())
        setUpHotKey();
    closeNotch();
    settings_->setSettingsPageRaw(page);
    settingsWindow_->show();
    if (usage_)
        usage_->noteFeatureUsed(QStringLiteral("settings"));
}

RemoteRefusal AppDelegate::openSettings(const QString& page)
{
    if (!settingsPageFromRaw(page.toStdString())) {
        QStringList pages;
        for (SettingsPage known : allSettingsPages)
            pages << toQString(rawValue(known));
        return unknownChoice(QStringLiteral("settings page"), page, pages);
    }
    showSettings(page);
    return std::nullopt;
}

void AppDelegate::finishOnboarding()
{
    settings_->setHasCompletedOnboarding(true);
    onboarding_->close();
    onboardingFinish_->start();
}

void AppDelegate::open(bool focus)
{
    if (notchPanelVisible())
        notchModel_->open(false, focus);
}

void AppDelegate::close()
{
    closeNotch();
}

// The hot key and the bus's Toggle alike: nothing while the notch is not on screen, and an open
// from here takes keyboard focus, since the user asked from the keyboard or a script.
void AppDelegate::toggle()
{
    if (!notchPanelVisible())
        return;
    if (notchModel_->isOpen())
        notchModel_->close();
    else
        notchModel_->open(false, true);
}

RemoteRefusal AppDelegate::openTab(const QString& tab)
{
    const auto chosen = notchTabFromRaw(tab.toStdString());
    if (!chosen) {
        QStringList tabs;
        for (NotchTab known : allNotchTabs)
            tabs << toQString(rawValue(known));
        return unknownChoice(QStringLiteral("tab"), tab, tabs);
    }
    if (notchPanelVisible()) {
        // Opening may pick the tab of the closed notch's activity; the asked-for tab wins.
        notchModel_->open(false, true);
        notchModel_->setSelectedTab(*chosen);
        notch_->takeFocus();
    }
    return std::nullopt;
}

RemoteState AppDelegate::remoteState() const
{
    RemoteState state;
    if (notchModel_) {
        state.status = notchModel_->statusRaw();
        state.selectedTab = notchModel_->selectedTabRaw();
        const QVariantMap activity = notchModel_->activityMap();
        state.activityKind = activity.value(QStringLiteral("kind")).toString();
        state.activityTitle = activity.value(QStringLiteral("title")).toString();
        state.activityDetail = activity.value(QStringLiteral("detail")).toString();
    }
    state.notchEnabled = settings_->notchEnabled();
    state.panelVisible = notchPanelVisible();
    state.language = settings_->isArabic() ? QStringLiteral("arabic") : QStringLiteral("english");
    return state;
}

RemoteTimer AppDelegate::remoteTimer() const
{
    RemoteTimer timer;
    if (timer_) {
        timer.state = timer_->stateRaw();
        timer.remaining = timer_->remaining(clock_.now());
        timer.total = timer_->total();
        timer.focus = timer_->isFocus();
    }
    return timer;
}

namespace {

QString isoUtc(std::chrono::milliseconds sinceEpoch)
{
    return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count()).toUTC().toString(Qt::ISODate);
}

} // namespace

std::optional<RemoteNextPrayer> AppDelegate::remoteNextPrayer() const
{
    if (!prayer_ || !prayer_->upcoming())
        return std::nullopt;
    const auto& next = *prayer_->upcoming();
    return RemoteNextPrayer{toQString(rawValue(next.prayer)), isoUtc(next.at.time_since_epoch()),
                            prayer_->cityEnglish()};
}

std::optional<RemoteNextMeeting> AppDelegate::remoteNextMeeting() const
{
    if (!calendar_ || !calendar_->nextMeeting())
        return std::nullopt;
    const Meeting& next = *calendar_->nextMeeting();
    return RemoteNextMeeting{
        QString::fromStdString(next.title), isoUtc(next.start.time_since_epoch()),
        isoUtc(next.end.time_since_epoch()), QString::fromStdString(next.joinLink.value_or(""))};
}

RemoteRefusal AppDelegate::startTimer(double minutes, bool focus)
{
    if (timer_ && timer_->start(minutes, focus))
        return std::nullopt;
    return QStringLiteral("a timer runs for more than 0 and at most %1 minutes")
        .arg(longestTimerMinutes);
}

namespace {

const QStringList captureModes{QStringLiteral("area"), QStringLiteral("window"),
                               QStringLiteral("screen")};

} // namespace

RemoteRefusal AppDelegate::takeScreenshot(const QString& mode)
{
    if (!captureModes.contains(mode))
        return unknownChoice(QStringLiteral("mode"), mode, captureModes);
    closeNotch();
    if (capture_ && capture_->takeScreenshot(mode))
        return std::nullopt;
    return QStringLiteral("screenshots are unavailable here");
}

RemoteRefusal AppDelegate::startRecording(const QString& mode)
{
    if (!captureModes.contains(mode))
        return unknownChoice(QStringLiteral("mode"), mode, captureModes);
    closeNotch();
    if (capture_ && capture_->startRecording(mode))
        return std::nullopt;
    return QStringLiteral("a recording runs already, or recording is unavailable here");
}

void AppDelegate::stopRecording()
{
    if (capture_)
        capture_->stopRecording();
}

void AppDelegate::stopTimer()
{
    if (timer_)
        timer_->stop();
}

RemoteVolume AppDelegate::remoteVolume() const
{
    if (!volume_)
        return {};
    return {volume_->volume(), volume_->isMuted(), volume_->outputName(), volume_->outputs()};
}

void AppDelegate::setVolume(double volume)
{
    if (volume_)
        volume_->set(volume);
}

void AppDelegate::toggleMute()
{
    if (volume_)
        volume_->toggleMute();
}

RemoteRefusal AppDelegate::selectOutput(const QString& name)
{
    if (volume_ && volume_->selectOutput(name))
        return std::nullopt;
    return unknownChoice(QStringLiteral("output"), name,
                         volume_ ? volume_->outputs() : QStringList());
}

QVariantMap AppDelegate::remoteDevices() const
{
    if (!devices_ || !transfers_)
        return {};
    return {{QStringLiteral("batteries"), devices_->batteries()},
            {QStringLiteral("onCharger"), devices_->onCharger()},
            {QStringLiteral("bluetooth"), devices_->bluetooth()},
            {QStringLiteral("drives"), devices_->drives()},
            {QStringLiteral("usb"), devices_->usb()},
            {QStringLiteral("displays"), devices_->displays()},
            {QStringLiteral("transfers"), transfers_->transfers()}};
}

void AppDelegate::publishState()
{
    if (remote_)
        remote_->stateChanged();
}

bool AppDelegate::notchPanelVisible() const
{
    return notch_ && notch_->isVisible();
}

bool AppDelegate::hasCompletedOnboarding() const
{
    return settings_->hasCompletedOnboarding();
}

void AppDelegate::closeNotch()
{
    if (notchModel_)
        notchModel_->close();
}

bool AppDelegate::isMenuPanelShown() const
{
    return menuPanel_->isShown() || menuDismissal_.justDismissed(clock_.now());
}

void AppDelegate::closeMenuPanel()
{
    menuDismissal_.reset();
    menuPanel_->close();
}

void AppDelegate::showMenuPanel(const QRect& anchor)
{
    QQuickWindow* window = menuPanel_->window();
    if (!window)
        return;
    QScreen* screen = anchor.isValid() ? QGuiApplication::screenAt(anchor.center()) : nullptr;
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (screen) {
        const QRect frame = menuPanelFrame(anchor, window->size(), screen->geometry(),
                                           screen->availableGeometry(), settings_->isArabic());
        window->setScreen(screen);
        window->setPosition(frame.topLeft());
    }
    menuPanel_->show();
}

} // namespace navro
