// The other program of a drag into the browser: a window that offers what the command line says.
//
//   drag_source X Y [--only-copy] FORMAT DATA [FORMAT DATA…]
//
// It prints `action ACTION` when what a drop would do changes, and `ended ACTION` after a drag.
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QWidget>
#include <cstdio>

namespace {

class Source : public QWidget {
public:
    Source(QStringList const& arguments, Qt::DropActions actions) : m_offered(arguments), m_actions(actions) {
        setWindowTitle(QStringLiteral("drag source"));
        setFixedSize(120, 120);
    }

protected:
    void mouseMoveEvent(QMouseEvent*) override {
        if (m_dragging)
            return;
        m_dragging = true;
        auto* const data = new QMimeData;
        for (qsizetype i = 0; i + 1 < m_offered.size(); i += 2)
            data->setData(m_offered[i], m_offered[i + 1].toUtf8());
        auto* const drag = new QDrag(this);
        drag->setMimeData(data);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) { print("action", action); });
        print("ended", drag->exec(m_actions, Qt::CopyAction));
        m_dragging = false;
    }

private:
    static void print(char const* what, Qt::DropAction action) {
        std::printf("%s %s\n", what,
                    action == Qt::MoveAction   ? "move"
                    : action == Qt::CopyAction ? "copy"
                    : action == Qt::LinkAction ? "link"
                                               : "none");
        std::fflush(stdout);
    }

    QStringList m_offered;
    Qt::DropActions m_actions;
    bool m_dragging = false;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    auto arguments = application.arguments().mid(1);
    QPoint const place(arguments.value(0).toInt(), arguments.value(1).toInt());
    auto const actions = arguments.removeAll(QStringLiteral("--only-copy")) > 0
                             ? Qt::DropActions(Qt::CopyAction)
                             : Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    Source source(arguments.mid(2), actions);
    source.move(place);
    source.show();
    return application.exec();
}
