// The contract of every defaults domain, held by the one on disk, by the one in memory, and by the
// one on disk when it has no disk.

#include "store_fixture.h"

#include "store/memory_defaults_domain.h"
#include "support/printers.h"

namespace velarc {

namespace {

enum class Kind
{
    Memory,
    Disk,
    DiskWithoutFiles,
};

class DefaultsDomainContract
    : public StoreFolder
    , public ::testing::WithParamInterface<Kind>
{
protected:
    std::unique_ptr<DefaultsDomain> domain = make();

private:
    std::unique_ptr<DefaultsDomain> make() const
    {
        switch (GetParam()) {
        case Kind::Memory:
            return std::make_unique<MemoryDefaultsDomain>();
        case Kind::Disk:
            return openDomain();
        case Kind::DiskWithoutFiles:
            return std::make_unique<SqliteDefaultsDomain>(QStringList(), clock);
        }
        return nullptr;
    }
};

constexpr QByteArrayView kKey = "a.key";

} // namespace

TEST_P(DefaultsDomainContract, nothingStandsUnderAKeyAtFirst)
{
    EXPECT_EQ(domain->bytes(kKey), std::nullopt);
    EXPECT_FALSE(domain->boolean(kKey));
    EXPECT_FALSE(domain->holds(kKey));
}

TEST_P(DefaultsDomainContract, documentIsReadBackToTheByte)
{
    for (const QByteArray &document : {QByteArray("{}"), QByteArray(""), QByteArray(),
             QByteArray("a\0b\xff", 4), QByteArray(3'000'000, 'x')}) {
        domain->setBytes(kKey, document);
        EXPECT_TRUE(domain->bytes(kKey) == document) << document.size();
        EXPECT_TRUE(domain->holds(kKey));
        EXPECT_FALSE(domain->boolean(kKey));
    }
}

TEST_P(DefaultsDomainContract, bothBooleansAreReadBackAndStandThere)
{
    domain->setBoolean(kKey, true);
    EXPECT_TRUE(domain->boolean(kKey));
    EXPECT_TRUE(domain->holds(kKey));
    EXPECT_EQ(domain->bytes(kKey), std::nullopt);
    domain->setBoolean(kKey, false);
    EXPECT_FALSE(domain->boolean(kKey));
    EXPECT_TRUE(domain->holds(kKey));
}

TEST_P(DefaultsDomainContract, laterValueReplacesTheEarlierOneOfEitherKind)
{
    domain->setBytes(kKey, "first");
    domain->setBytes(kKey, "second");
    EXPECT_EQ(domain->bytes(kKey), "second");
    domain->setBoolean(kKey, true);
    EXPECT_EQ(domain->bytes(kKey), std::nullopt);
    domain->setBytes(kKey, "third");
    EXPECT_EQ(domain->bytes(kKey), "third");
}

TEST_P(DefaultsDomainContract, keysAreKeptApartToTheLetter)
{
    domain->setBytes("key", "1");
    domain->setBytes("Key", "2");
    domain->setBytes("key ", "3");
    domain->setBytes("", "4");
    EXPECT_EQ(domain->bytes("key"), "1");
    EXPECT_EQ(domain->bytes("Key"), "2");
    EXPECT_EQ(domain->bytes("key "), "3");
    EXPECT_EQ(domain->bytes(""), "4");
}

TEST_P(DefaultsDomainContract, removedKeyStandsNoMoreAndCanBeSetAgain)
{
    domain->setBytes(kKey, "x");
    domain->setBytes("other", "y");
    domain->remove(kKey);
    EXPECT_FALSE(domain->holds(kKey));
    EXPECT_EQ(domain->bytes("other"), "y");
    domain->remove(kKey);
    domain->setBytes(kKey, "z");
    EXPECT_EQ(domain->bytes(kKey), "z");
}

TEST_P(DefaultsDomainContract, proposalIsTakenWhereNothingStands)
{
    EXPECT_EQ(domain->settle(kKey, std::nullopt, "mine"), "mine");
    EXPECT_EQ(domain->bytes(kKey), "mine");
}

TEST_P(DefaultsDomainContract, proposalIsTakenWhereStillStandsWhatWasSeen)
{
    domain->setBytes(kKey, "broken");
    EXPECT_EQ(domain->settle(kKey, "broken", "mine"), "mine");
    EXPECT_EQ(domain->bytes(kKey), "mine");
}

TEST_P(DefaultsDomainContract, proposalGivesWayToWhatWasWrittenMeanwhile)
{
    domain->setBytes(kKey, "winner");
    EXPECT_EQ(domain->settle(kKey, std::nullopt, "mine"), "winner");
    EXPECT_EQ(domain->settle(kKey, "broken", "mine"), "winner");
    EXPECT_EQ(domain->bytes(kKey), "winner");
    domain->setBytes(kKey, "");
    EXPECT_EQ(domain->settle(kKey, std::nullopt, "mine"), "");
}

TEST_P(DefaultsDomainContract, proposalIsTakenWhereWhatWasSeenIsGone)
{
    EXPECT_EQ(domain->settle(kKey, "seen", "mine"), "mine");
    EXPECT_EQ(domain->bytes(kKey), "mine");
}

TEST_P(DefaultsDomainContract, booleanIsNoDocumentThatAProposalGivesWayTo)
{
    domain->setBoolean(kKey, true);
    EXPECT_EQ(domain->settle(kKey, std::nullopt, "mine"), "mine");
    EXPECT_EQ(domain->bytes(kKey), "mine");
    domain->setBoolean(kKey, true);
    EXPECT_EQ(domain->settle(kKey, "seen", "mine again"), "mine again");
    EXPECT_EQ(domain->bytes(kKey), "mine again");
}

INSTANTIATE_TEST_SUITE_P(Every, DefaultsDomainContract,
    ::testing::Values(Kind::Memory, Kind::Disk, Kind::DiskWithoutFiles),
    [](const auto &parameters) {
        switch (parameters.param) {
        case Kind::Memory:
            return "memory";
        case Kind::Disk:
            return "disk";
        case Kind::DiskWithoutFiles:
            return "diskWithoutFiles";
        }
        return "";
    });

} // namespace velarc
