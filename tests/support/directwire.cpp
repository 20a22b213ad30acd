#include "consolewire.h"

#include "ecmanager.h"
#include "orvaneecclientdecoder.h"

namespace Orvane::TestSupport {

using namespace ECProxy::Client;

namespace {

class DirectWire : public ConsoleWire {
public:
    void join(const std::shared_ptr<EC::s_ECKeyboardConfig>& keyboard, Receive receive) override
    {
        ECManager* const manager = ECManager::instance();
        manager->addSendDownTLVRequstCB([receive](const QByteArray& datagram) {
            receive(datagram.constData(), datagram.size());
            return true;
        });
        manager->setECClientDecoder(m_pDecoder);
        m_pDecoder->registerUpTLVDecodeFinishedCB(
            [manager](const eECUpMessageTag& tag, const QByteArray& value) {
                return manager->upTLVDecodeFinished(tag, value);
            });
        manager->init(keyboard);
        m_pDecoder->startDecode();
    }

    void report(const QByteArray& datagram) override { m_pDecoder->appendDatagram(datagram); }

    void end() override
    {
        // The send route cannot be taken back: the manager goes with the rig.
        m_pDecoder->stopDecode();
        ECManager::deleteInstance();
    }

private:
    const std::shared_ptr<ECClientDecoder> m_pDecoder = std::make_shared<ECClientDecoder>(nullptr);
};

} // namespace

std::unique_ptr<ConsoleWire> makeDirectWire()
{
    return std::make_unique<DirectWire>();
}

} // namespace Orvane::TestSupport
