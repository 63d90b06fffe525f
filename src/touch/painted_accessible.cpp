#include "touch/painted_accessible.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QWidget>
#include <utility>
#include <vector>

namespace
{
class CPartAccessible : public QAccessibleInterface, public QAccessibleActionInterface
{
public:
    CPartAccessible(QWidget* widget, IPaintedParts* parts, int index)
        : m_widget(widget), m_parts(parts), m_index(index)
    {
    }
    bool isValid() const override { return m_widget && m_index < m_parts->GetPartCount(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override
    {
        return m_widget ? QAccessible::queryAccessibleInterface(m_widget) : nullptr;
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QString text(QAccessible::Text kind) const override
    {
        const CPaintedPart part = Part();
        return kind == QAccessible::Name ? part.Name : kind == QAccessible::Value ? part.Value : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override
    {
        return m_widget ? Part().Rect.translated(m_widget->mapToGlobal(QPoint(0, 0))) : QRect();
    }
    QAccessible::Role role() const override { return Part().Role; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        const CPaintedPart part = Part();
        state.invalid = !isValid();
        state.invisible = !m_widget || !m_widget->isVisible();
        state.offscreen = m_widget && !m_widget->rect().intersects(part.Rect);
        state.selectable = state.focusable = part.Pressable;
        state.selected = part.Selected;
        state.focused = part.Selected && m_widget && m_widget->hasFocus();
        state.checkable = part.Checkable;
        state.checked = part.Checked;
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override
    {
        return Part().Pressable ? QStringList{pressAction()} : QStringList();
    }
    void doAction(const QString& name) override
    {
        if (name == pressAction() && isValid() && Part().Pressable)
            m_parts->PressPart(m_index);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    CPaintedPart Part() const { return isValid() ? m_parts->GetPart(m_index) : CPaintedPart(); }

    QPointer<QWidget> m_widget;
    IPaintedParts* m_parts;
    int m_index;
};

class CSurfaceAccessible : public QAccessibleWidget
{
public:
    CSurfaceAccessible(QWidget* widget, IPaintedParts* parts)
        : QAccessibleWidget(widget, QAccessible::List), m_parts(parts)
    {
    }
    ~CSurfaceAccessible() override
    {
        for (const QAccessible::Id id : m_ids)
            QAccessible::deleteAccessibleInterface(id);
    }
    int childCount() const override { return Count() + QAccessibleWidget::childCount(); }
    QAccessibleInterface* child(int index) const override
    {
        if (index < 0)
            return nullptr;
        return index < Count() ? PartAt(index) : QAccessibleWidget::child(index - Count());
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        for (int n = 0; n < Count(); ++n) {
            if (PartAt(n) == child)
                return n;
        }
        const int index = QAccessibleWidget::indexOfChild(child);
        return index < 0 ? -1 : index + Count();
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        // A live control lies over the row that it edits.
        if (QAccessibleInterface* const control = QAccessibleWidget::childAt(x, y))
            return control;
        for (int n = 0; n < Count(); ++n) {
            if (PartAt(n)->rect().contains(x, y))
                return PartAt(n);
        }
        return nullptr;
    }

private:
    int Count() const { return isValid() ? m_parts->GetPartCount() : 0; }
    QAccessibleInterface* PartAt(int index) const
    {
        for (int n = int(m_ids.size()); n <= index; ++n)
            m_ids.push_back(
                QAccessible::registerAccessibleInterface(new CPartAccessible(widget(), m_parts, n)));
        return QAccessible::accessibleInterface(m_ids[size_t(index)]);
    }

    IPaintedParts* m_parts;
    mutable std::vector<QAccessible::Id> m_ids; // made when first asked for
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object)
{
    QWidget* const widget = qobject_cast<QWidget*>(object);
    IPaintedParts* const parts = widget ? dynamic_cast<IPaintedParts*>(widget) : nullptr;
    return parts ? new CSurfaceAccessible(widget, parts) : nullptr;
}

PartListener s_listener;

void Tell(QWidget* widget, int part, QAccessible::Event what)
{
    if (!IsScreenRead() || part < 0)
        return;
    if (s_listener)
        s_listener(widget, part, what);
    QAccessibleEvent event(widget, what);
    event.setChild(part);
    QAccessible::updateAccessibility(&event);
}
} // namespace

bool IsScreenRead()
{
    return s_listener || QAccessible::isActive();
}

void SetPartListener(PartListener listener)
{
    s_listener = std::move(listener);
}

void TellPartSelected(QWidget* widget, int part)
{
    Tell(widget, part, QAccessible::Focus);
}

void TellPartRenamed(QWidget* widget, int part)
{
    Tell(widget, part, QAccessible::NameChanged);
}

void CToldParts::Tell(QWidget* widget, const IPaintedParts& parts)
{
    if (!IsScreenRead())
        return;
    const size_t count = size_t(parts.GetPartCount());
    const bool others = count != m_told.size(); // by number they are not those that were told
    m_told.resize(count, {false, false});
    for (int n = 0; n < int(count); ++n) {
        const CPaintedPart part = parts.GetPart(n);
        const State before = std::exchange(m_told[size_t(n)], {part.Selected, part.Checked});
        // A live control that has the keyboard speaks for itself.
        if (part.Selected && !before.Selected && widget->hasFocus())
            TellPartSelected(widget, n);
        if (part.Checked != before.Checked && !others) {
            if (s_listener)
                s_listener(widget, n, QAccessible::StateChanged);
            QAccessible::State changed;
            changed.checked = true;
            QAccessibleStateChangeEvent event(widget, changed);
            event.setChild(n);
            QAccessible::updateAccessibility(&event);
        }
    }
}

void OfferPaintedParts()
{
    static const bool offered = [] {
        QAccessible::installFactory(MakeAccessible);
        return true;
    }();
    (void)offered;
}
