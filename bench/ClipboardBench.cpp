#include "FakePasteboard.h"
#include "FakeSettingsStore.h"
#include "ManualClock.h"
#include "app/AppSettings.h"
#include "app/FileAccess.h"
#include "data/ClipboardHistoryFile.h"
#include "data/ClipboardStore.h"

#include <QUuid>
#include <benchmark/benchmark.h>
#include <filesystem>

namespace {

using namespace navro;
namespace fs = std::filesystem;

// A full history of 500 entries as a user builds it: mostly short texts, links and file lists,
// some images, most with their application.
std::vector<ClipboardItem> fullHistory()
{
    std::vector<ClipboardItem> items;
    const char* sources[] = {"Firefox", "Text Editor", "Files", "Terminal", "محرر النصوص"};
    for (int i = 0; i < 500; ++i) {
        ClipboardItem item;
        item.id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
        item.date = WallTime(std::chrono::seconds(1'750'000'000 - i * 60));
        switch (i % 10) {
        case 0:
            item.kind = ClipboardKind::image;
            item.text = "1920 × 1080";
            item.imageFile = item.id + ".png";
            break;
        case 1:
        case 2:
            item.kind = ClipboardKind::link;
            item.text = "https://example.com/articles/" + std::to_string(i) + "?utm_source=news";
            break;
        case 3:
            item.kind = ClipboardKind::file;
            item.text = "/home/user/Documents/report " + std::to_string(i) +
                        ".pdf\n/home/user/Pictures/photo.jpg";
            break;
        default:
            item.kind = ClipboardKind::text;
            item.text = "A sentence someone copied, number " + std::to_string(i) +
                        ", with a few more words to make it as long as a usual copy.";
        }
        if (i % 7 != 0)
            item.sourceApp = sources[i % 5];
        items.push_back(std::move(item));
    }
    return items;
}

// A full history on disk, and what a store needs beside it.
struct FullHistory {
    FullHistory()
    {
        char name[] = "/tmp/navro-bench-XXXXXX";
        folder = ::mkdtemp(name);
        makePrivateFolder(folder);
        writeFileAtomically(folder / "clipboard.plist", encodeClipboardHistory(fullHistory()));
        settings.setClipboardLimit(500);
    }
    ~FullHistory() { fs::remove_all(folder); }

    ClipboardStore makeStore()
    {
        return ClipboardStore(settings, clock, pasteboard, frontmost, folder);
    }

    fs::path folder;
    FakeSettingsStore settingsStore;
    AppSettings settings{settingsStore, [] { return QStringList{"en-GB"}; }};
    ManualClock clock;
    FakePasteboard pasteboard;
    FakeFrontmostApplication frontmost;
};

// What a start costs the store: reading and decoding a full history from disk.
void loadFullHistory(benchmark::State& state)
{
    FullHistory history;
    for (auto _ : state) {
        ClipboardStore store = history.makeStore();
        benchmark::DoNotOptimize(store.items().data());
        if (store.items().size() != 500)
            state.SkipWithError("the history did not load whole");
    }
}
BENCHMARK(loadFullHistory)->Unit(benchmark::kMillisecond);

// One recorded copy with a full history: classification, the new entry, the whole file written
// (and flushed to the disk) again.
void recordOneCopy(benchmark::State& state)
{
    FullHistory history;
    ClipboardStore store = history.makeStore();
    store.start();
    int copy = 0;
    for (auto _ : state)
        history.pasteboard.copy(FakePasteboard::text(QStringLiteral("copy number %1").arg(++copy)));
    if (store.items().size() != 500)
        state.SkipWithError("the history is not full");
}
BENCHMARK(recordOneCopy)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
