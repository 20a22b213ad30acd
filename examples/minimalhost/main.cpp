// The least that a host of the console is: a model, a window, a session. The model is the one in memory, with
// the application's own hardware behind it; here its takes last 800 ms and all else is simulated.
#include <orvaneecproxyclient/ecconsolesession.h>
#include <orvanememorymodel/memorymodel.h>
#include <orvaneplatform/bizmodel/device.h>
#include <orvaneplatform/bizmodel/screen.h>
#include <orvaneplatform/ec/eckeyboardloader.h>

#include <QApplication>
#include <QLabel>

using namespace Orvane;

class Hardware : public MemoryModel::Processor {
    void take(const MemoryModel::ScreenJob&, OpenRequest end) override
    {
        succeedAfter(std::chrono::milliseconds(800), end);
    }
};

QString screensText(const BizModel::DeviceList& list)
{
    QString text;
    const auto device = list.activedDevice().lock();
    for (const auto& each : device->screens(BizModel::Enum::Screen::RegularScreen)) {
        const auto screen = each.lock();
        text += screen->name() + (screen->selected() ? " selected" : "") + (screen->freeze() ? " frozen" : "")
            + (screen->state() ? " busy\n" : "\n");
    }
    return text;
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList files = app.arguments().mid(1); // the keyboard and the show
    MemoryModel::MemoryModel model(std::make_unique<Hardware>());
    QStringList faults;
    if (!model.loadFile(files.value(1), faults))
        qFatal("%s", qUtf8Printable(faults.join('\n')));

    QLabel window;
    const auto showScreens = [&] { window.setText(screensText(model.deviceList())); };
    QObject::connect(
        &model.deviceList(), &MemoryModel::ModelSignals::signalModelChanged, &window, showScreens);
    showScreens();
    window.show();

    ECProxy::Client::ECConsoleSession session; // after the model, for it ends before it
    if (!session.start(EC::loadKeyboardFile(files.value(0)).config))
        qFatal("%s", qUtf8Printable(session.errorString()));
    return app.exec();
}
