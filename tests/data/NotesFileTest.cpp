#include "data/NotesFile.h"

#include <gtest/gtest.h>
#include <random>

namespace navro {
namespace {

using namespace std::chrono;

// 2001-01-01 00:00:00 UTC plus `seconds`, the way the file counts.
WallTime sinceReference(double seconds)
{
    return WallTime(milliseconds(978307200000 + std::llround(seconds * 1000)));
}

const WallTime loadedAt = sinceReference(800000000.5);

std::string freshID()
{
    return "00000000-0000-4000-8000-000000000001";
}

NotesDecoding decode(std::string_view json)
{
    return decodeNotes(json, loadedAt, freshID);
}

TEST(NotesFile, WritesCompactJsonWithKeysInTheirOrder)
{
    NotesDocument document;
    document.todos.push_back({"E621E1F8-C36C-495A-93FC-0C247A3E6E5F", "Pay rent", false,
                              sinceReference(767463000.125), Priority::high,
                              sinceReference(767470200)});
    document.todos.push_back({"0B9E4A8C-7D1F-4E25-A3B6-9C8D7E6F5A4B", "a/b \"q\" \\ \n\t\x01 é ✓",
                              true, sinceReference(-86400.5), Priority::none, std::nullopt});
    document.note = "Line 1\nالسطر 2";
    EXPECT_EQ(encodeNotes(document),
              R"({"todos":[)"
              R"({"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","text":"Pay rent","done":false,)"
              R"("created":767463000.125,"priority":3,"due":767470200},)"
              R"({"id":"0B9E4A8C-7D1F-4E25-A3B6-9C8D7E6F5A4B",)"
              R"("text":"a\/b \"q\" \\ \n\t\u0001 é ✓","done":true,"created":-86400.5,)"
              R"("priority":0}],"note":"Line 1\nالسطر 2"})");
    EXPECT_EQ(encodeNotes({}), R"({"todos":[],"note":""})");
}

TEST(NotesFile, WhatIsWrittenReadsBackEqual)
{
    std::mt19937_64 random(7);
    const std::string alphabet[] = {"a", "Z", " ", "\n", "\"", "\\", "/", "\x1f",
                                    "é", "ع", "✓", "😀",  "\t", "{",  "}"};
    for (int round = 0; round < 200; ++round) {
        NotesDocument document;
        for (int i = int(random() % 6); i > 0; --i) {
            Todo todo;
            todo.id = newTodoID();
            for (int c = int(random() % 20); c > 0; --c)
                todo.text += alphabet[random() % std::size(alphabet)];
            todo.done = random() % 2;
            // Milliseconds over about ±300 years around the file's origin.
            todo.created = WallTime(milliseconds(std::int64_t(random() % 20000000000000ULL) -
                                                 10000000000000 + 978307200000));
            todo.priority = static_cast<Priority>(random() % 4);
            if (random() % 2)
                todo.due = todo.created + milliseconds(random() % 100000000);
            document.todos.push_back(todo);
        }
        for (int c = int(random() % 40); c > 0; --c)
            document.note += alphabet[random() % std::size(alphabet)];
        const auto decoded = decode(encodeNotes(document));
        ASSERT_TRUE(decoded.document) << decoded.error;
        ASSERT_EQ(*decoded.document, document) << encodeNotes(document);
    }
}

TEST(NotesFile, MissingKeysTakeTheirDefaults)
{
    const auto empty = decode("{}");
    ASSERT_TRUE(empty.document);
    EXPECT_EQ(*empty.document, NotesDocument{});

    // Nulls are read as absent, the way earlier versions' optional keys could be written.
    const auto bare =
        decode(R"({"todos":[{},{"id":null,"text":"x","priority":null}],"note":null})");
    ASSERT_TRUE(bare.document) << bare.error;
    const Todo expected{freshID(), "", false, loadedAt, Priority::none, std::nullopt};
    ASSERT_EQ(bare.document->todos.size(), 2u);
    EXPECT_EQ(bare.document->todos[0], expected);
    EXPECT_EQ(bare.document->todos[1].text, "x");
    EXPECT_EQ(bare.document->todos[1].priority, Priority::none);
    EXPECT_EQ(bare.document->note, "");
}

TEST(NotesFile, ReadsWhatOtherWritersProduce)
{
    // Lower-case ids, whole-number and microsecond times, extra keys, spacing, escapes.
    const auto decoded = decode(R"({ "version": 2, "note": "a\u00e9\/b",
        "todos": [ { "id": "e621e1f8-c36c-495a-93fc-0c247a3e6e5f", "text": "Call",
                     "done": true, "created": 767463000.123456, "priority": 2.0,
                     "due": 767470200, "colour": "red" } ] })");
    ASSERT_TRUE(decoded.document) << decoded.error;
    EXPECT_EQ(decoded.document->note, "aé/b");
    const Todo expected{
        "E621E1F8-C36C-495A-93FC-0C247A3E6E5F", "Call",           true,
        sinceReference(767463000.123),          Priority::medium, sinceReference(767470200)};
    ASSERT_EQ(decoded.document->todos.size(), 1u);
    EXPECT_EQ(decoded.document->todos[0], expected);
}

TEST(NotesFile, APresentKeyOfTheWrongKindFailsTheWholeFile)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "not JSON"},
        {"not json", "not JSON"},
        {R"({"todos":[{"text":"cut off")", "not JSON"},
        {"[]", "not a JSON object"},
        {R"({"todos":{}})", "\"todos\" is not a list"},
        {R"({"todos":["Pay rent"]})", "to-do 1: not an object"},
        {R"({"note":5})", "\"note\" is not a string"},
        {R"({"todos":[{},{"id":7}]})", "to-do 2: \"id\" is not a UUID"},
        {R"({"todos":[{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5"}]})", "\"id\" is not a UUID"},
        {R"({"todos":[{"id":"{E621E1F8-C36C-495A-93FC-0C247A3E6E5F}"}]})", "\"id\" is not a UUID"},
        {R"({"todos":[{"id":"E621E1F8XC36C-495A-93FC-0C247A3E6E5F"}]})", "\"id\" is not a UUID"},
        {R"({"todos":[{"text":["a"]}]})", "\"text\" is not a string"},
        {R"({"todos":[{"done":"yes"}]})", "\"done\" is not true or false"},
        {R"({"todos":[{"done":1}]})", "\"done\" is not true or false"},
        {R"({"todos":[{"created":"2024-01-01"}]})", "\"created\" is not a time"},
        {R"({"todos":[{"created":1e300}]})", "\"created\" is not a time"},
        {R"({"todos":[{"priority":4}]})", "\"priority\" is not a whole number from 0 to 3"},
        {R"({"todos":[{"priority":-1}]})", "\"priority\" is not a whole number from 0 to 3"},
        {R"({"todos":[{"priority":1.5}]})", "\"priority\" is not a whole number from 0 to 3"},
        {R"({"todos":[{"priority":"1"}]})", "\"priority\" is not a whole number from 0 to 3"},
        {R"({"todos":[{"due":true}]})", "\"due\" is not a time"},
    };
    for (const auto& [json, reason] : cases) {
        const auto decoded = decode(json);
        EXPECT_FALSE(decoded.document) << json;
        EXPECT_NE(decoded.error.find(reason), std::string::npos)
            << json << " gave: " << decoded.error;
    }
}

TEST(NotesFile, NewIDsAreFreshCanonicalUUIDs)
{
    const std::string first = newTodoID();
    EXPECT_NE(first, newTodoID());
    const auto decoded = decode(R"({"todos":[{"id":")" + first + R"("}]})");
    ASSERT_TRUE(decoded.document) << first;
    EXPECT_EQ(decoded.document->todos.at(0).id, first);
    EXPECT_EQ(first.find_first_of("abcdef"), std::string::npos);
}

} // namespace
} // namespace navro
