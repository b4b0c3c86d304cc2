#include "support/xmp_properties.h"

// STAND-IN: reads no packet and delivers no property; the calls around it tell the host that a
// packet was there.
void XMPSPutDocPropsImp(void*, void* const*, void*, void*) { }
