#include "views/FactRows.h"

#include "browsing/FileMetadata.h"
#include "views/Theme.h"
#include "views/WrappedLabel.h"

#include <QGridLayout>

#include <algorithm>

namespace taliro {

namespace {
constexpr int labelWidth = 72;
constexpr int spacing = 6;
constexpr int mostLines = 3;
} // namespace

FactRows::FactRows(QWidget* parent) : QWidget(parent) {
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins({});
    grid->setHorizontalSpacing(spacing);
    grid->setVerticalSpacing(metrics::grid + 1);
    grid->setColumnMinimumWidth(0, labelWidth);
    grid->setColumnStretch(1, 1);
}

void FactRows::setFacts(Facts const& facts) {
    auto const sameLabels = std::ranges::equal(
        facts, m_rows, [](auto const& fact, auto const& row) { return fact.first == row.first->text(); });
    if (!sameLabels)
        makeRows(facts);
    for (std::size_t i = 0; i < facts.size(); ++i)
        m_rows[i].second->setText(facts[i].second);
}

void FactRows::makeRows(Facts const& facts) {
    for (auto const& [name, value] : std::exchange(m_rows, {})) {
        delete name;
        delete value;
    }
    auto* const grid = static_cast<QGridLayout*>(layout());
    auto const font = Theme::current().font(metrics::small);
    for (auto const& [label, value] : facts) {
        auto* const name = new WrappedLabel(font, &Colors::text2, 1, this);
        name->setText(label);
        name->setFixedWidth(labelWidth);
        auto* const text = new WrappedLabel(font, &Colors::text1, mostLines, this);
        text->setAccessibleDescription(label);
        auto const row = static_cast<int>(m_rows.size());
        grid->addWidget(name, row, 0, Qt::AlignTop);
        grid->addWidget(text, row, 1);
        m_rows.emplace_back(name, text);
    }
}

FactRows::Facts factsOf(Platform& platform, Url const& item) {
    FileMetadata const metadata{item};
    std::pair<char const*, std::optional<std::string>> const known[] = {
        {QT_TRANSLATE_NOOP("FactRows", "Kind"), metadata.kind(platform)},
        {QT_TRANSLATE_NOOP("FactRows", "Dimensions"), metadata.dimensions(platform)},
        {QT_TRANSLATE_NOOP("FactRows", "Size"), metadata.size(platform)},
        {QT_TRANSLATE_NOOP("FactRows", "Modified"), metadata.modified(platform)},
    };
    FactRows::Facts facts;
    for (auto const& [label, value] : known)
        if (value)
            facts.emplace_back(QCoreApplication::translate("FactRows", label),
                               QString::fromStdString(*value));
    return facts;
}

} // namespace taliro
