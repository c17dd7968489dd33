#pragma once

class ScopeLink;

// Shows the hourglass pointer during the link's waits.
void UseWaitCursor(ScopeLink& link);
