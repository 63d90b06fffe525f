// What filters need of the categories: names for numbers and back.
#pragma once
#include <QString>
#include <optional>

class ICategoryNames
{
public:
    virtual ~ICategoryNames() = default;
    virtual std::optional<qint32> NumberOf(const QString& name) const = 0; // ignores case
    virtual std::optional<QString> NameOf(qint32 number) const = 0;
};
