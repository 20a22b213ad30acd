// Checks the model in memory, with a show of yours, against the rules for models. Copy it and put your own
// model in the place of the one in memory.
#include "memorymodel.h"
#include "modelcheck.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>

namespace {

class ShowFixture final : public Orvane::ModelTest::ModelFixture {
public:
    explicit ShowFixture(QString showFile)
        : m_strShowFile(std::move(showFile))
    {
    }

    bool create(QString& error) override
    {
        m_pModel = std::make_unique<Orvane::MemoryModel::MemoryModel>();
        QStringList faults;
        const bool ok = m_pModel->loadFile(m_strShowFile, faults);
        m_pModel->setShowFile({}); // saving is checked, the show is not written
        error = faults.join(QLatin1Char('\n'));
        return ok;
    }
    void destroy() override { m_pModel.reset(); }

private:
    const QString m_strShowFile;
    std::unique_ptr<Orvane::MemoryModel::MemoryModel> m_pModel;
};

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication app(argc, argv);
    if (QCoreApplication::arguments().size() != 2) {
        std::fputs("usage: orvane-model-check SHOW\n", stderr);
        return 2;
    }
    ShowFixture fixture(QCoreApplication::arguments().at(1));
    return Orvane::ModelTest::checkModelMain(fixture);
}
