#pragma once

#include "foundation/Subscription.h"
#include "foundation/Url.h"

#include <QWidget>

namespace taliro {

class FactRows;
class ThumbnailView;
class WrappedLabel;
struct ContentSummary;
struct Platform;

/// A large icon or thumbnail with what is known of the item and, where it holds others, what it holds.
class SummaryPreview : public QWidget {
    Q_OBJECT

public:
    explicit SummaryPreview(Platform& platform, QWidget* parent = nullptr);

    void setItem(Url const& item, bool holdsOthers);
    void clear();

private:
    void show(ContentSummary const& summary);

    Platform& m_platform;
    Url m_item;
    ThumbnailView* m_preview;
    WrappedLabel* m_name;
    FactRows* m_facts;
    WrappedLabel* m_contents;
    Subscription m_request;
};

} // namespace taliro
