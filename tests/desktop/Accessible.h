#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QString>

#include "desktop/Display.h"

#include <functional>
#include <optional>
#include <vector>

namespace taliro::testing {

/// A thing in the accessibility tree of a running program, as a screen reader finds it. One that isn't there,
/// or not any more, is empty and answers nothing.
class Accessible {
public:
    enum class State {
        active = 1,
        checked = 4,
        enabled = 8,
        focused = 12,
        selected = 23,
        showing = 25,
        visible = 30
    };

    Accessible() = default;
    Accessible(QDBusConnection bus, QString service, QString path)
        : m_bus(std::move(bus)), m_service(std::move(service)), m_path(std::move(path)) {}

    explicit operator bool() const { return !m_path.isEmpty(); }
    QString name() const;
    QString description() const;
    QString role() const; ///< "push button", "list item", "text"
    QString text() const; ///< of an editable field
    bool has(State state) const;
    bool isShowing() const { return has(State::showing); }
    Place place() const; ///< on the screen
    std::vector<Accessible> children() const;

    /// The first, depth first, that `wanted` holds for; an empty one where there is none.
    Accessible find(std::function<bool(Accessible const&)> const& wanted) const;
    /// An empty role or name matches any.
    Accessible find(QString const& role, QString const& name) const;
    std::vector<Accessible> findAll(QString const& role) const;
    /// `find`, once it is there and showing; a failure of the test, with the tree, where it doesn't come.
    Accessible expect(QString const& role, QString const& name) const;
    bool waitUntilGone(QString const& role, QString const& name) const;

    /// Presses, toggles or opens it as assistive tools do.
    bool act(QString const& action = QStringLiteral("Press")) const;
    /// The tree from here, a line a thing.
    std::string dump(int depth = 0) const;

    QString const& service() const { return m_service; }

private:
    QVariant property(char const* interface, char const* name) const;
    QDBusMessage call(char const* interface, char const* method, QVariantList const& arguments = {}) const;

    std::optional<QDBusConnection> m_bus;
    QString m_service;
    QString m_path;
};

/// The accessibility bus of a session.
class AccessibilityBus {
public:
    explicit AccessibilityBus(QDBusConnection const& session);
    ~AccessibilityBus();
    AccessibilityBus(AccessibilityBus const&) = delete;
    AccessibilityBus& operator=(AccessibilityBus const&) = delete;

    /// The program with this process id, once it has shown itself there; empty where it doesn't.
    Accessible application(int pid);

private:
    std::optional<QDBusConnection> m_bus;
    QString m_name;
};

} // namespace taliro::testing
