#ifndef STRANGER_AREAS_H
#define STRANGER_AREAS_H

// One function for each area of the library; each uses every exported function of its area.
void useGlobals();
void useValues();
void useCalendar();
void useLeapSeconds();
void useClocks();
void usePresent();
void useZones();
void useLocks();
void useLogging();

#endif  // STRANGER_AREAS_H
