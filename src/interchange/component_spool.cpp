#include "interchange/component_spool.h"

#include <QDataStream>

qint64 CComponentSpool::Put(const CComponent& component)
{
    if (!m_file.isOpen() && !m_file.open())
        return -1;
    const qint64 place = m_file.size();
    if (!m_file.seek(place))
        return -1;
    QDataStream out(&m_file);
    out << QByteArray::fromStdString(component.Name) << component.FirstLine
        << quint32(component.Lines.size());
    for (const CComponent::Line& line : component.Lines)
        out << line.Offset << line.Length << line.Number;
    out << QByteArray::fromStdString(component.Text);
    return out.status() == QDataStream::Ok ? place : -1;
}

bool CComponentSpool::Take(qint64 place, CComponent* component)
{
    component->Clear();
    if (!m_file.seek(place))
        return false;
    QDataStream in(&m_file);
    QByteArray name, text;
    quint32 lines = 0;
    in >> name >> component->FirstLine >> lines;
    for (quint32 i = 0; i < lines && in.status() == QDataStream::Ok; ++i) {
        CComponent::Line line;
        in >> line.Offset >> line.Length >> line.Number;
        component->Lines.push_back(line);
    }
    in >> text;
    component->Name = name.toStdString();
    component->Text = text.toStdString();
    return in.status() == QDataStream::Ok;
}
