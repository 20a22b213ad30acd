// A program from outside: it uses the installed headers and libraries and nothing of this source tree.
#include <orvaneecproxyclient/commandmanager.h>
#include <orvaneecproxyclient/ecmanager.h>
#include <orvaneecproxyclient/orvaneecclientchannelmanager.h>
#include <orvanememorymodel/memorymodel.h>
#include <orvanemodeltester/modeltester.h>
#include <orvanenotices/noticepresenter.h>
#include <orvaneplatform/ec/eckeyboardconfig.h>

#include <QCoreApplication>

#include <cstdio>

using namespace Orvane::ECProxy::Client;

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    Orvane::MemoryModel::MemoryModel model;
    const Orvane::ModelTest::ModelTester tester(model.deviceList());
    QByteArray sent;
    ECManager* manager = ECManager::instance();
    manager->addSendDownTLVRequstCB([&](const QByteArray& datagram) {
        sent = datagram;
        return true;
    });
    manager->init(std::make_shared<Orvane::EC::s_ECKeyboardConfig>());
    manager->lockTBar();
    ECClientChannelManager channel; // not opened: no port is touched
    const bool worked = manager->isLockedTBar() && sent.size() == ECValueOffset
        && !channel.sendDownTLVRequest(sent) && tester.faults().isEmpty()
        && Orvane::Notices::NoticePresenter::staticMetaObject.className();
    ECManager::deleteInstance();
    std::puts(worked ? "works" : "does not work");
    return worked ? 0 : 1;
}
