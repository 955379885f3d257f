// The other program of a drag out of the browser: a window that takes every drop and tells of it.
//
//   drag_target X Y copy
//   drag_target X Y move FOLDER    moves what it takes into the folder, as file managers do
//
// It prints `entered` when a drag comes over it; after a drop, a line `FORMAT BYTES` for each format, the
// bytes percent-escaped, and `dropped`.
#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <cstdio>
#include <optional>

namespace {

class Target : public QWidget {
public:
    /// With a folder to move into, or without and copying.
    explicit Target(std::optional<QDir> folder) : m_folder(std::move(folder)) {
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
        for (auto const& url : event->mimeData()->urls())
            if (m_folder && !QFile::rename(url.toLocalFile(), m_folder->filePath(url.fileName())))
                print("not moved");
        print("dropped");
    }

private:
    void take(QDropEvent& event) {
        event.setDropAction(m_folder ? Qt::MoveAction : Qt::CopyAction);
        event.accept();
    }
    static void print(QByteArray const& line) {
        std::puts(line.constData());
        std::fflush(stdout);
    }

    std::optional<QDir> m_folder;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    auto const arguments = application.arguments();
    bool const moves = arguments.value(3) == QLatin1String("move");
    Target target(moves ? std::optional(QDir(arguments.value(4))) : std::nullopt);
    target.move(arguments.value(1).toInt(), arguments.value(2).toInt());
    target.show();
    return application.exec();
}
