#include "platform/core/COrvelArchiveReader.h"
#include "platform/core/COrvelArchiveWriter.h"
#include "platform/core/COrvelDataMembersManager.h"
#include "platform/core/COrvelMessageManager.h"
#include "platform/core/COrvelNodeVisitor.h"
#include "platform/core/COrvelPtr.h"
#include "platform/core/COrvelWriter.h"
#include "tests/support/VirtualFunctionSlot.h"

#include <gmock/gmock.h>

namespace Orvel
{
namespace
{

using testing::ElementsAre;

#ifdef ORVEL_TESTS_SEE_VIRTUAL_SLOTS

TEST(VirtualFunctions, StandInThePromisedOrder)
{
    using Base = COrvelDataMembersManager;
    const std::int64_t slots[] = {Slot(&COrvelArchivable::ArchiveReadWrite),
                                  Slot(&COrvelArchivable::ReadFromArchive),
                                  Slot(&COrvelArchivable::WriteIntoArchive),
                                  Slot(&COrvelObject::MakeCopy),
                                  Slot(&COrvelObject::RestoreFromCopy),
                                  Slot(static_cast<COrvelString& (Base::*)()>(&Base::Name)),
                                  Slot(&Base::SetName),
                                  Slot(&Base::DisplayName),
                                  Slot(&Base::SetDisplayName),
                                  Slot(&Base::DataMemberSearch),
                                  Slot(&Base::CreateValue)};
    EXPECT_THAT(slots, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
    EXPECT_EQ(Slot(&Base::ReadFromArchive), 2) << "overrides take no slot of their own";

    EXPECT_EQ(TableEntry(&COrvelNodeVisitor::VisitSceneNode), 0) << "no virtual destructor before it";
    EXPECT_EQ(TableEntry(&COrvelNodeVisitor::TraverseDocument), 1);
    EXPECT_EQ(TableEntry(&COrvelNodeVisitor::Traverse), 2);
    EXPECT_EQ(Slot(&COrvelWriter::Export), 1);
    EXPECT_EQ(Slot(&COrvelWriter::ExportSceneNode), 2);
}

#endif

class Counted : public COrvelDataMembersManager
{
public:
    explicit Counted(int& newDestroyed)
        : destroyed(&newDestroyed)
    {}
    Counted(const Counted&) = default;
    Counted& operator=(const Counted&) = default;
    ~Counted() override { ++*destroyed; }

private:
    int* destroyed;
};

TEST(References, CountHoldersOfOneObject)
{
    int destroyed = 0;
    Counted* const object = new Counted(destroyed);
    EXPECT_EQ(object->ReferenceCount(), 0);
    {
        COrvelPtr<Counted> first(object);
        EXPECT_EQ(object->ReferenceCount(), 1);
        const COrvelPtr<COrvelDataMembersManager> asBase = first;
        const COrvelPtr<Counted> copy = first;
        EXPECT_EQ(object->ReferenceCount(), 3);
        const COrvelPtr<Counted>& itself = first;
        first = itself;
        EXPECT_EQ(object->ReferenceCount(), 3);
        const COrvelPtr<Counted> moved = std::move(first);
        EXPECT_EQ(object->ReferenceCount(), 3);
        EXPECT_TRUE(moved == asBase);
        EXPECT_FALSE(COrvelPtr<Counted>());

        Counted copied(*object);
        EXPECT_EQ(copied.ReferenceCount(), 0) << "nobody holds the copy yet";
        copied = *object;
        EXPECT_EQ(copied.ReferenceCount(), 0);
        *object = copied;
        EXPECT_EQ(object->ReferenceCount(), 3);
    }
    EXPECT_EQ(destroyed, 2) << "the object and the copy of it";
}

TEST(References, HoldTheNewObjectBeforeTheOldOneGoes)
{
    // The old object owns the new one's last other holder.
    class Link : public COrvelReferenced
    {
    public:
        COrvelPtr<Link> next;
    };
    COrvelPtr<Link> head(new Link);
    head->next = new Link;
    Link* const second = head->next.Get();
    head = head->next;
    EXPECT_EQ(head.Get(), second);
    EXPECT_EQ(second->ReferenceCount(), 1);
}

TEST(DataMembers, AreArchivedThroughTheBasePart)
{
    COrvelDataMembersManager written;
    written.SetName("größe");
    EXPECT_EQ(written.DisplayName(), "größe") << "unless it has one of its own";
    written.SetDisplayName("中");
    COrvelArchiveWriter writer;
    ASSERT_TRUE(written.COrvelArchivable::ArchiveReadWrite(writer));
    COrvelArchiveReader archive(writer.Bytes());
    COrvelDataMembersManager read;
    ASSERT_TRUE(read.COrvelArchivable::ArchiveReadWrite(archive));
    EXPECT_TRUE(archive.IsAtEnd());
    EXPECT_EQ(read.Name(), "größe");
    EXPECT_EQ(read.DisplayName(), "中");
}

class Receiver final : public COrvelMessageReceiver
{
public:
    Receiver(std::vector<int>& newCalls, int newNumber)
        : calls(newCalls)
        , number(newNumber)
    {
        COrvelMessageManager::Instance()->RegisterReceiver(this);
    }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    ~Receiver() { COrvelMessageManager::Instance()->RemoveReceiver(this); }

    void ReceiveMessage(COrvelMessage& message, const COrvelString& origin) override
    {
        calls.push_back(number);
        lastOrigin = origin;
        lastCount = message.Count();
        for (COrvelMessageReceiver* const receiver : removes)
            COrvelMessageManager::Instance()->RemoveReceiver(receiver);
    }

    std::vector<COrvelMessageReceiver*> removes;
    COrvelString lastOrigin;
    std::size_t lastCount = 0;

private:
    std::vector<int>& calls;
    int number;
};

TEST(Messages, ReachReceiversInOrderWithinTheCall)
{
    COrvelMessage message("type");
    COrvelMessageManager::Instance()->DistributeMessage(message, "nobody listens");

    std::vector<int> calls;
    Receiver first(calls, 1);
    Receiver second(calls, 2);
    Receiver third(calls, 3);
    COrvelMessageManager::Instance()->RegisterReceiver(&first);
    first.removes = {&first, &second};
    message.AddValue("value", 1.5);
    COrvelMessageManager::Instance()->DistributeMessage(message, "here");
    EXPECT_THAT(calls, ElementsAre(1, 3)) << "the second was removed before its turn";
    EXPECT_EQ(third.lastOrigin, "here");
    EXPECT_EQ(third.lastCount, 1u);
    COrvelMessageManager::Instance()->DistributeMessage(message, "again");
    EXPECT_THAT(calls, ElementsAre(1, 3, 3));
}

} // namespace
} // namespace Orvel
