#include <QApplication>
#include <QWidget>

/// The least that a program with a window can be: what the console's start is held against.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.resize(986, 678);
    window.show();
    return QApplication::exec();
}
