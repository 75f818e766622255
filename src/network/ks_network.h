// Two-player network play in lockstep over TCP.
#pragma once

void KSNetworkExchange();
void KSNetworkEnd();
bool KSNetworkActive();
bool KSNetworkHosting();
