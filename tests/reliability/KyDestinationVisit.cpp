#include "KyDestinationVisit.h"

#include <KyDestination.h>

namespace Kyte {
namespace Test {

static void read(KyDestination *destination)
{
    for (KyDestination::DataType type : {KyDestination::Data_Channel, KyDestination::Data_Group}) {
        destination->setDataType(type);
        destination->startToRead();
        destination->readCategory(type);
    }
    destination->readDestinationsInChannel(0);
    destination->readDestinationsInGroup(-1);
    destination->setMaxDestinationCount(3);
    destination->readDestinations(-2, -2);
    destination->setMaxDestinationCount(1);
    destination->setMaxChannelCount(1);
    destination->startToRead();
    destination->setMaxDestinationCount(-1);
    destination->setMaxChannelCount(-1);
}

VisitResult visit(KyDestination *destination)
{
    VisitResult result;
    result.isInitialized = destination->init();
    read(destination);
    for (KyDestination::DataType type : {KyDestination::Data_Channel, KyDestination::Data_Group}) {
        int id = -1;
        destination->getNewId(type);
        destination->getNewPosIndex(type);
        destination->addNewCategory(type, QStringLiteral("New"), &id);
        destination->renameCategory(type, id, QStringLiteral("Newer"));
        destination->changeDestinationCategory({0, 1, 2, 999}, id, type);
        destination->removeCategory(type, 0);
    }
    read(destination);
    result.isSaved = destination->saveData();
    destination->currentDatabaseFileHashSha1();
    destination->reconnectDatabase();
    destination->readGroups();
    return result;
}

} // namespace Test
} // namespace Kyte
