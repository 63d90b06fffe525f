// How items leave the store: by the object model's folder, through the transport that the shell gave.
#include "pim/pim_store_private.h"

void CPimStore::SetTransport(IItemTransport* transport)
{
    d->Transport = transport;
}

IItemTransport* CPimStore::Transport() const
{
    return d->Transport;
}

CStatus CPimStore::BeamItem(IPOutlookApp& app, int kind, quint32 itemId)
{
    const std::unique_ptr<IFolder> folder = app.GetDefaultFolder(olFolderInfrared);
    const OlItem item = kind == kKindTask      ? OlItem::Task
                        : kind == kKindContact ? OlItem::Contact
                                               : OlItem::Appointment;
    const CStatus added = folder->AddItemToInfraredFolder(item, itemId);
    return added ? folder->SendToInfrared() : added;
}
