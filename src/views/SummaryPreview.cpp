#include "views/SummaryPreview.h"

#include "foundation/Text.h"
#include "platform/Platform.h"
#include "platform/PreviewService.h"
#include "views/FactRows.h"
#include "views/Names.h"
#include "views/ThumbnailView.h"
#include "views/WrappedLabel.h"

#include <QHBoxLayout>
#include <QPainter>

namespace taliro {

SummaryPreview::SummaryPreview(Platform& platform, QWidget* parent) : QWidget(parent), m_platform(platform) {
    auto const& theme = Theme::current();
    m_preview = new ThumbnailView(platform, this);
    m_preview->setFixedSize(220, 220);
    m_preview->setBare(true);
    m_name = new WrappedLabel(theme.font(16, QFont::DemiBold), &Colors::text1, 3, this);
    m_facts = new FactRows(this);
    m_contents = new WrappedLabel(theme.font(metrics::small), &Colors::text2, 8, this);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(12);
    texts->addStretch();
    texts->addWidget(m_name);
    texts->addWidget(m_facts);
    texts->addWidget(m_contents);
    texts->addStretch();
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(28, 20, 28, 20);
    row->setSpacing(24);
    row->addWidget(m_preview);
    row->addLayout(texts, 1);
}

void SummaryPreview::clear() {
    m_request.cancel();
    m_preview->setUrl(std::nullopt);
}

void SummaryPreview::setItem(Url const& item, bool holdsOthers) {
    m_item = item;
    m_preview->setUrl(item);
    m_name->setText(shownName(item.lastPathComponent()));
    m_facts->setFacts(factsOf(m_platform, item));
    m_contents->setText({});
    m_contents->setVisible(holdsOthers);
    m_request.cancel();
    if (holdsOthers)
        m_request =
            m_platform.previews.summary(item, [this](ContentSummary const& summary) { show(summary); });
}

void SummaryPreview::show(ContentSummary const& summary) {
    auto const number = [](std::int64_t count) { return QString::fromStdString(numberText(count)); };
    auto const items = summary.files + summary.folders;
    auto contents = items == 1 ? tr("1 item") : tr("%1 items").arg(number(items));
    if (summary.folders > 0)
        contents = tr("%1, %2 of them folders").arg(contents, number(summary.folders));
    if (!summary.finished)
        contents += u'…';
    auto facts = factsOf(m_platform, m_item);
    facts.emplace_back(tr("Contents"), contents);
    facts.emplace_back(tr("In total"), QString::fromStdString(byteCountText(summary.bytes)));
    m_facts->setFacts(facts);

    QStringList names;
    for (auto const& name : summary.names)
        names.append(shownName(name));
    auto text = names.join(QStringLiteral(" · "));
    if (summary.finished && summary.damaged)
        text = items == 0 ? tr("The contents can’t be read.")
                          : tr("%1\nNot everything could be read.").arg(text);
    m_contents->setText(text);
}

} // namespace taliro
