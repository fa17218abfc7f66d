#include "development/GalleryReader.h"

#include <QApplication>
#include <QTimer>

namespace {

class GalleryReader : public Reader {
public:
    explicit GalleryReader(bool hangs) : m_hangs(hangs) {}

    void Submit(Job job) override {
        if (m_hangs)
            return;
        QTimer::singleShot(0, qApp, [job = std::move(job)] {
            if (!job.stop.stop_requested())
                job.work(job.stop.get_token());
            job.done();
        });
    }

private:
    bool m_hangs;
};

} // namespace

Reader& AnsweringReader() {
    static GalleryReader reader(false);
    return reader;
}

Reader& HangingReader() {
    static GalleryReader reader(true);
    return reader;
}
