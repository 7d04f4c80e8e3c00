#pragma once

#include <QImage>
#include <QMutex>

namespace navro {

// The now-playing service's pictures as the views load them. The views may load images on a
// thread of their own, hence the lock.
class NowPlayingImages {
public:
    enum class Kind { artwork, appIcon };

    void set(Kind kind, const QImage& image)
    {
        QMutexLocker lock(&mutex_);
        images_[int(kind)] = image;
    }
    QImage get(Kind kind) const
    {
        QMutexLocker lock(&mutex_);
        return images_[int(kind)];
    }

private:
    mutable QMutex mutex_;
    QImage images_[2];
};

} // namespace navro
