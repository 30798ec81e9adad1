#ifndef CIFWARD_QCBSCONTACTRECORD_H
#define CIFWARD_QCBSCONTACTRECORD_H

#include <QString>

// Who submits the structures: kept in the preferences, offered by the publication wizard where
// a block names no contact author.
struct QcbsContactRecord {
    QString name, address, phone, fax, email;
};

#endif
