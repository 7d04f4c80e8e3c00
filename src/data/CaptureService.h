#pragma once

#include "app/Clock.h"
#include "data/RecentCaptures.h"
#include "data/ScreenCapture.h"

#include <QDateTime>
#include <QImage>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <filesystem>
#include <vector>

namespace navro {

class AppSettings;
class DesktopFiles;

// Screenshots and screen recordings. Screenshots are saved as PNG in the pictures folder's
// "Screenshots", recordings in the videos folder's "Screencasts"; the last fifty of them are
// listed (kept in "captures.json" in the data folder; files deleted elsewhere drop out).
class CaptureService : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged)
    // When the running recording started; invalid while none runs.
    Q_PROPERTY(QDateTime recordingStarted READ recordingStarted NOTIFY isRecordingChanged)
    Q_PROPERTY(bool canRecord READ canRecord CONSTANT)
    // [{path, url, name, kind ("screenshot"/"recording"), date, exists, isImage, icon,
    //   genericIcon}] newest first.
    Q_PROPERTY(QVariantList recent READ recentList NOTIFY recentChanged)

public:
    struct Folders {
        std::filesystem::path screenshots; // …/Pictures/Screenshots
        std::filesystem::path recordings;  // …/Videos/Screencasts
        std::filesystem::path data;        // where "captures.json" is kept
    };
    // The user's XDG pictures and videos folders and Navro's data folder.
    static Folders defaultFolders();

    CaptureService(Clock& clock, const AppSettings& settings, ScreenGrabber& grabber,
                   ScreenRecorder& recorder, DesktopFiles& files, Folders folders,
                   QObject* parent = nullptr);
    ~CaptureService() override;

    bool isRecording() const { return isRecording_; }
    QDateTime recordingStarted() const { return recordingStarted_; }
    bool canRecord() const { return canRecord_; }
    const std::vector<Capture>& recent() const { return recent_; }
    QVariantList recentList() const { return recentList_; }
    std::filesystem::path listFile() const { return folders_.data / "captures.json"; }

    // False, and nothing happens, for a mode that is not "area", "window" or "screen" (and for
    // recordings, while recording cannot work here or already runs).
    Q_INVOKABLE bool takeScreenshot(const QString& mode);
    Q_INVOKABLE bool startRecording(const QString& mode);
    Q_INVOKABLE void stopRecording();

    // Operations on a listed capture, named by its path; an unlisted path does nothing.
    Q_INVOKABLE void open(const QString& path);
    Q_INVOKABLE void showInFolder(const QString& path);
    Q_INVOKABLE void copy(const QString& path);
    // Moves the file to the trash (deletes it where there is none) and drops it from the list.
    Q_INVOKABLE void remove(const QString& path);
    // Drops captures whose files are gone (the tab calls it when it is shown).
    Q_INVOKABLE void refresh();

    // Before the program ends: a running recording is ended so that its file is finished.
    void shutDown();

signals:
    void isRecordingChanged();
    void recentChanged();
    void saved(navro::CaptureKind kind, const QString& path);
    // Captures go to the clipboard through its history, so that they are recorded once.
    void imageForClipboard(const QImage& image);
    void filesForClipboard(const QStringList& paths);

private:
    // Lets the user choose what `mode` captures, then hands the grab to `then`.
    void choose(CaptureMode mode, void (CaptureService::*then)(const ScreenGrab&));
    void screenshotTaken(const ScreenGrab& grab);
    void recordingAreaChosen(const ScreenGrab& grab);
    void recordingEnded(const QString& file, std::optional<QString> failure);
    void setRecording(bool recording);
    std::filesystem::path freshFile(const std::filesystem::path& folder, CaptureKind kind) const;
    const Capture* find(const QString& path) const;
    void add(Capture capture);
    void load();
    void save();
    void publish();

    Clock& clock_;
    const AppSettings& settings_;
    ScreenGrabber& grabber_;
    ScreenRecorder& recorder_;
    DesktopFiles& files_;
    Folders folders_;
    bool canRecord_ = false;
    bool isRecording_ = false;
    bool choosing_ = false;
    QDateTime recordingStarted_;
    std::vector<Capture> recent_;
    QVariantList recentList_;
    bool loggedSaveFailure_ = false;
};

} // namespace navro
