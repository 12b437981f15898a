#pragma once

#include <QString>

/// The estimate of how long work will go on, such as "about 3 min left". A share `done` of it, from 0 to 1, took these
/// seconds, and the rest is taken to go on at the same pace. Empty while that tells too little, and at the end.
QString remainingTimeText(double done, double seconds);
