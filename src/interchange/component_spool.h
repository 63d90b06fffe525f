// Components set aside until more of their file is known, in a temporary file.
#pragma once
#include "interchange/component_reader.h"

#include <QTemporaryFile>

class CComponentSpool
{
public:
    // The place of what was put; below 0 when the file cannot be written.
    qint64 Put(const CComponent& component);
    bool Take(qint64 place, CComponent* component);

private:
    QTemporaryFile m_file;
};
