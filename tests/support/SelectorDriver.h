#pragma once

#include <QString>

namespace KivTest {

class ModalDriver;

/// Queues an answer for the next `KivAdapterUI::SpatialReferenceSelectorDlg`:
/// make the system with `code` ("EPSG:4214") current and press OK. A code that
/// the picker does not list is a test failure (the picker is then cancelled).
void answerSelector(ModalDriver& driver, const QString& code);
/// Queues a Cancel for the next reference picker.
void cancelSelector(ModalDriver& driver);

} // namespace KivTest
