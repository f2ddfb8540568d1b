#include "support/FakeHost.h"

namespace KivTest {

FakeHost::FakeHost(ContentsKind contents, bool frame)
    : contentsKind(contents), withFrame(frame), map(new KivCarto::Map(QStringLiteral("Test map")))
{
    mainWindow.setWindowTitle(QStringLiteral("Test host"));
    widgetContents.setWindowTitle(QStringLiteral("Layers"));
}

FakeHost::~FakeHost() = default;

KivCarto::IPmdContents* FakeHost::GetMapContents()
{
    switch (contentsKind) {
    case WidgetView:
        return &widgetContents;
    case NonWidgetView:
        return &plainContents;
    case NoContents:
        break;
    }
    return nullptr;
}

} // namespace KivTest
