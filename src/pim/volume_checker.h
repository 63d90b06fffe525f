// Soundness of a volume: of its file, and of what its records say. Every record and blob is read.
// Errors: what is wrong goes to `faults`, one sentence each; the status tells when the check itself
//   could not be done.
#pragma once
#include "platform/property_volume.h"

CStatus CheckVolume(CPropertyVolume& volume, QStringList& faults);
