// An empty window, which the console's start is compared with. Built of Qt's windows alone.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1040, 680);
    window.show();
    return QApplication::exec();
}
