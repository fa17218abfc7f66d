#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace {

class BareWindow : public QWidget {
public:
    /// Tells on standard output when the window has been painted, and closes it.
    bool event(QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            QTimer::singleShot(0, this, [this] {
                std::puts("painted");
                close();
            });
        }
        return QWidget::event(event);
    }
};

} // namespace

/// The least that a program with a window can be: what the console's start is held against.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    BareWindow window;
    window.resize(986, 678);
    window.show();
    return QApplication::exec();
}
