// The infrared folder: collects items and hands them to the transport.
#pragma once
#include "object_model/object_model.h"

class CInfraredFolder : public IFolder
{
public:
    CInfraredFolder(IPOutlookApp& app, IItemTransport* transport) : m_app(app), m_transport(transport) {}
    CStatus AddItemToInfraredFolder(OlItem kind, quint32 itemId) override;
    CStatus SendToInfrared() override;

private:
    IPOutlookApp& m_app;
    IItemTransport* m_transport;
    std::vector<CItemName> m_items;
};
