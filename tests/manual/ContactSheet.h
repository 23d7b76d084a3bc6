#pragma once

#include <QImage>

/** Draws every exhibit with its name, in columns, at the application's device-pixel ratio. */
QImage contactSheet();
