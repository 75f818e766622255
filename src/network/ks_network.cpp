// Network play is not available yet: no session is ever active.
#include "network/ks_network.h"

void KSNetworkExchange() {}
void KSNetworkEnd() {}
bool KSNetworkActive() { return false; }
bool KSNetworkHosting() { return false; }
