// One line of the now-playing watcher's output, as the service handles it: JSON, numbers,
// base64 artwork and the image decoders behind it.
#include "FakeNowPlayingWatcher.h"
#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "app/AppSettings.h"
#include "app/Log.h"
#include "media/NowPlayingService.h"

#include <QCoreApplication>
#include <cstddef>
#include <cstdint>

namespace {

struct Harness {
    Harness() : settings(store, [] { return QStringList{"en"}; })
    {
        service = std::make_unique<navro::NowPlayingService>(clock, settings, watcher, applications,
                                                             downloader);
        service->start();
    }

    int argc = 1;
    char name[16] = "fuzz";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    navro::CapturingLogSink log;
    navro::ManualClock clock;
    navro::FakeSettingsStore store;
    navro::AppSettings settings;
    navro::FakeNowPlayingWatcher watcher;
    navro::FakePlayerApplications applications;
    navro::FakeArtworkDownloader downloader;
    std::unique_ptr<navro::NowPlayingService> service;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Harness harness;
    harness.service->handle(QByteArrayView(data, qsizetype(size)));
    (void)harness.service->elapsedNow();
    harness.log.lines.clear();
    harness.downloader.requests.clear();
    return 0;
}
