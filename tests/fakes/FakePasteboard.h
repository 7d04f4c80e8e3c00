#pragma once

#include "data/FrontmostApplication.h"
#include "data/Pasteboard.h"

#include <QHash>
#include <vector>

namespace navro {

// A clipboard that tests fill as other programs would, and that records what is written to it.
class FakePasteboard final : public Pasteboard {
public:
    struct Content {
        QStringList types;
        QHash<QString, QByteArray> data;
        QStringList files;
        std::optional<QString> text;
        std::optional<QImage> image;
    };

    static Content text(const QString& text, QStringList extraTypes = {})
    {
        return {QStringList{"text/plain"} + extraTypes, {}, {}, text, {}};
    }
    static Content files(const QStringList& paths)
    {
        return {{"text/uri-list", "x-special/gnome-copied-files"}, {}, paths, {}, {}};
    }
    static Content image(const QImage& image) { return {{"image/png"}, {}, {}, {}, image}; }

    // Another program takes the clipboard with `content`.
    void copy(Content content)
    {
        content_ = std::move(content);
        changed();
    }

    // True: every change is told at once. False: nothing is told, the counter must be read.
    bool announcesChanges = true;
    // This process's own writes are told on a later turn (deliverDeferred) instead of at once.
    bool defersOwnChanges = false;
    void deliverDeferred()
    {
        for (; deferred_ > 0; --deferred_)
            if (changed_)
                changed_();
    }

    const Content& content() const { return content_; }
    // What this process wrote, in order: "clear", "string", "image", "files".
    std::vector<std::string> writes;

    std::uint64_t changeCount() override { return count_; }
    bool watch(std::function<void()> changed) override
    {
        changed_ = std::move(changed);
        return announcesChanges;
    }
    QStringList types() override { return content_.types; }
    QByteArray data(const QString& type) override { return content_.data.value(type); }
    QStringList filePaths() override { return content_.files; }
    std::optional<QString> string() override { return content_.text; }
    std::optional<QImage> image() override { return content_.image; }

    void clear() override { write("clear", {}); }
    void writeString(const QString& text) override { write("string", this->text(text)); }
    void writeImage(const QImage& image) override { write("image", this->image(image)); }
    void writeFiles(const QStringList& paths) override { write("files", files(paths)); }

private:
    void write(const std::string& what, Content content)
    {
        writes.push_back(what);
        content_ = std::move(content);
        if (defersOwnChanges && announcesChanges) {
            ++count_;
            ++deferred_;
            return;
        }
        changed();
    }
    void changed()
    {
        ++count_;
        if (announcesChanges && changed_)
            changed_();
    }

    Content content_;
    std::uint64_t count_ = 0;
    int deferred_ = 0;
    std::function<void()> changed_;
};

class FakeFrontmostApplication final : public FrontmostApplication {
public:
    std::optional<QString> displayName(bool arabic) override
    {
        return arabic && arabicName ? arabicName : name;
    }
    std::optional<QString> name;
    std::optional<QString> arabicName;
};

} // namespace navro
