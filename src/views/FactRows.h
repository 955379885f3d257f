#pragma once

#include <QWidget>

#include <utility>
#include <vector>

namespace taliro {

class Url;
class WrappedLabel;
struct Platform;

/// Labels with their values, one below the other.
class FactRows : public QWidget {
    Q_OBJECT

public:
    using Facts = std::vector<std::pair<QString, QString>>;

    explicit FactRows(QWidget* parent = nullptr);
    void setFacts(Facts const& facts);

private:
    void makeRows(Facts const& facts);

    std::vector<std::pair<WrappedLabel*, WrappedLabel*>> m_rows;
};

/// What is known of the item: its kind, its dimensions if it is an image, its size and when it was changed.
FactRows::Facts factsOf(Platform& platform, Url const& item);

} // namespace taliro
