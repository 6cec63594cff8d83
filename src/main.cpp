#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication oApplication(argc, argv);
    return QApplication::exec();
}
