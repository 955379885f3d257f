// The other program of a drag into the browser: a window that offers what the command line says.
//
//   drag_source X Y [--only-copy] [--promise NAME BYTES] [FORMAT DATA…]
//
// It prints `began` when a drag is under way, `action ACTION` when what a drop would do changes, and
// `ended ACTION` after a drag. A promised file is saved, with these bytes, where the taker says: by the X
// Direct Save protocol.
#include <QApplication>
#include <QDrag>
#include <QFile>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimer>
#include <QUrl>
#include <QWidget>
#include <cstdio>
#include <string>
#include <xcb/xcb.h>

namespace {

constexpr char directSave[] = "XdndDirectSave0";

/// The property of the drag's source window that name and place of a promised file are told by.
class PromiseProperty {
public:
    PromiseProperty()
        : m_x(qApp->nativeInterface<QNativeInterface::QX11Application>()->connection()),
          m_property(atom(directSave)) {
        auto const asked = xcb_get_selection_owner(m_x, atom("XdndSelection"));
        auto* const reply = xcb_get_selection_owner_reply(m_x, asked, nullptr);
        m_window = reply->owner;
        std::free(reply);
    }
    void write(QByteArray const& text) const {
        xcb_change_property(m_x, XCB_PROP_MODE_REPLACE, m_window, m_property, atom("text/plain"), 8,
                            static_cast<std::uint32_t>(text.size()), text.constData());
        xcb_flush(m_x);
    }
    QByteArray read() const {
        auto const asked = xcb_get_property(m_x, 0, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, 0, 4096);
        auto* const reply = xcb_get_property_reply(m_x, asked, nullptr);
        QByteArray const text(static_cast<char const*>(xcb_get_property_value(reply)),
                              xcb_get_property_value_length(reply));
        std::free(reply);
        return text;
    }

private:
    xcb_atom_t atom(char const* name) const {
        auto const asked = xcb_intern_atom(m_x, 0, static_cast<std::uint16_t>(qstrlen(name)), name);
        auto* const reply = xcb_intern_atom_reply(m_x, asked, nullptr);
        auto const atom = reply->atom;
        std::free(reply);
        return atom;
    }

    xcb_connection_t* m_x;
    xcb_atom_t m_property;
    xcb_window_t m_window = XCB_WINDOW_NONE;
};

/// What is dragged; asked for a promised file, it saves that.
class Offer : public QMimeData {
public:
    QByteArray promised; ///< the bytes of the promised file

protected:
    QVariant retrieveData(QString const& format, QMetaType type) const override {
        if (format != QLatin1String(directSave))
            return QMimeData::retrieveData(format, type);
        QFile file(QUrl::fromEncoded(PromiseProperty().read()).toLocalFile());
        bool const saved = file.open(QIODevice::NewOnly) && file.write(promised) == promised.size();
        return QByteArray(saved ? "S" : "E");
    }
};

class Source : public QWidget {
public:
    Source(QStringList const& arguments, Qt::DropActions actions) : m_offered(arguments), m_actions(actions) {
        if (m_offered.value(0) == QLatin1String("--promise")) {
            m_promisedName = m_offered[1].toUtf8();
            m_promised = m_offered[2].toUtf8();
            m_offered.remove(0, 3);
        }
        setWindowTitle(QStringLiteral("drag source"));
        setFixedSize(120, 120);
    }

protected:
    void mouseMoveEvent(QMouseEvent*) override {
        if (m_dragging)
            return;
        m_dragging = true;
        auto* const data = new Offer;
        for (qsizetype i = 0; i + 1 < m_offered.size(); i += 2)
            data->setData(m_offered[i], m_offered[i + 1].toUtf8());
        auto* const drag = new QDrag(this);
        if (!m_promisedName.isEmpty()) {
            data->promised = m_promised;
            data->setData(QLatin1String(directSave), "S");
            QTimer::singleShot(0, drag, [this] { PromiseProperty().write(m_promisedName); });
        }
        drag->setMimeData(data);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) { print("action", action); });
        QTimer::singleShot(0, this, [] { say("began"); });
        print("ended", drag->exec(m_actions, Qt::CopyAction));
        m_dragging = false;
    }

private:
    static void say(char const* line) {
        std::puts(line);
        std::fflush(stdout);
    }
    static void print(std::string const& what, Qt::DropAction action) {
        say((what + (action == Qt::MoveAction   ? " move"
                     : action == Qt::CopyAction ? " copy"
                     : action == Qt::LinkAction ? " link"
                                                : " none"))
                .c_str());
    }

    QStringList m_offered;
    Qt::DropActions m_actions;
    QByteArray m_promisedName;
    QByteArray m_promised;
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
