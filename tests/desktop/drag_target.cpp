// The other program of a drag out of the browser: a window that takes every drop and tells of it.
//
//   drag_target X Y copy|move
//
// It prints `entered` when a drag comes over it; after a drop, a line `FORMAT BYTES` for each format, the
// bytes percent-escaped, and `dropped`.
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>
#include <cstdio>

namespace {

class Target : public QWidget {
public:
    explicit Target(Qt::DropAction action) : m_action(action) {
        setWindowTitle(QStringLiteral("drag target"));
        setFixedSize(120, 120);
        setAcceptDrops(true);
    }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override {
        take(*event);
        print("entered");
    }
    void dragMoveEvent(QDragMoveEvent* event) override { take(*event); }
    void dropEvent(QDropEvent* event) override {
        for (auto const& format : event->mimeData()->formats())
            print((format + u' ').toUtf8() + event->mimeData()->data(format).toPercentEncoding("/:. "));
        take(*event);
        print("dropped");
    }

private:
    void take(QDropEvent& event) {
        event.setDropAction(m_action);
        event.accept();
    }
    static void print(QByteArray const& line) {
        std::puts(line.constData());
        std::fflush(stdout);
    }

    Qt::DropAction m_action;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    auto const arguments = application.arguments();
    Target target(arguments.value(3) == QLatin1String("move") ? Qt::MoveAction : Qt::CopyAction);
    target.move(arguments.value(1).toInt(), arguments.value(2).toInt());
    target.show();
    return application.exec();
}
