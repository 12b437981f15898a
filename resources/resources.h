#pragma once

/// Makes the compiled-in pictures known under ":NAME.png". Call it once, after the application object is made and
/// before the first icon is asked for; a second call does nothing.
void registerResources();
