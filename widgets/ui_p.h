// Internals shared by the user-interface library's sources.
#pragma once

class QWidget;

namespace kxui_detail {
/// A QGuiApplication exists and this is its thread.
bool OnGuiThread();
/// A QApplication (widgets) exists and this is its thread.
bool OnWidgetThread();
/// The main window registered with KxSetMainWindow, or null; readable from any thread.
QWidget* RegisteredMainWindow();
}  // namespace kxui_detail
