#include "app/FileAccess.h"
#include "data/DueCalendar.h"
#include "data/NotesFile.h"
#include "data/TodoRules.h"

#include <benchmark/benchmark.h>
#include <random>
#include <unistd.h>

namespace navro {
namespace {

using namespace std::chrono;

const WallTime now = WallTime(milliseconds(1780000000000));

// A heavy user's file: 1,000 to-dos of every kind and a 100 KB note.
NotesDocument heavyDocument()
{
    std::mt19937 random(3);
    NotesDocument document;
    for (int i = 0; i < 1000; ++i) {
        Todo todo;
        todo.id = newTodoID();
        todo.text = "To-do number " + std::to_string(i) + ": call the office about the invoice";
        todo.done = random() % 4 == 0;
        todo.created = now - minutes(random() % 100000);
        todo.priority = static_cast<Priority>(random() % 4);
        if (random() % 2)
            todo.due = now + minutes(int(random() % 20000) - 5000);
        document.todos.push_back(std::move(todo));
    }
    while (document.note.size() < 100 * 1024)
        document.note += "A line of the scratch note, with \"quotes\" and a path/to/file.\n";
    return document;
}

class NotesFileBench : public benchmark::Fixture {
public:
    void SetUp(const benchmark::State&) override
    {
        char name[] = "/tmp/navro-notes-bench-XXXXXX";
        folder_ = ::mkdtemp(name);
        file_ = folder_ / "notes.json";
        document_ = heavyDocument();
        writeFileAtomically(file_, encodeNotes(document_));
    }
    void TearDown(const benchmark::State&) override { std::filesystem::remove_all(folder_); }

protected:
    std::filesystem::path folder_;
    std::filesystem::path file_;
    NotesDocument document_;
};

// What start-up does: read the whole file and decode it.
BENCHMARK_F(NotesFileBench, LoadThousandTodosAndA100KBNote)(benchmark::State& state)
{
    for (auto _ : state) {
        const FileRead read = readRegularFile(file_, 64 * 1024 * 1024);
        auto decoded = decodeNotes(read.bytes, now, newTodoID);
        benchmark::DoNotOptimize(decoded);
    }
}

// What every to-do change does: encode everything and replace the file (flushed to the disk).
BENCHMARK_F(NotesFileBench, SaveThousandTodosAndA100KBNote)(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(writeFileAtomically(file_, encodeNotes(document_)));
}

// The encoding alone, without the disk.
BENCHMARK_F(NotesFileBench, EncodeThousandTodosAndA100KBNote)(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(encodeNotes(document_));
}

void displayOrderOfThousand(benchmark::State& state)
{
    std::vector<TodoSortKey> keys;
    for (const Todo& todo : heavyDocument().todos)
        keys.push_back({todo.done, todo.priority, todo.due});
    for (auto _ : state)
        benchmark::DoNotOptimize(displayOrder(keys, now));
}
BENCHMARK(displayOrderOfThousand);

// Labelling every deadline of the heavy file again, as each change to the list does (the first
// labelling of a deadline costs more: about 15 µs of ICU formatting).
void deadlineLabelsOfThousand(benchmark::State& state)
{
    const DueCalendar calendar("Europe/Berlin");
    const NotesDocument document = heavyDocument();
    for (auto _ : state)
        for (const Todo& todo : document.todos)
            if (todo.due)
                benchmark::DoNotOptimize(calendar.deadlineLabel(*todo.due, now, false, true));
}
BENCHMARK(deadlineLabelsOfThousand);

} // namespace
} // namespace navro

BENCHMARK_MAIN();
