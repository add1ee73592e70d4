// Links and names from elsewhere: which workspace they mean, and what is asked before it is brought back.
#include "app/WorkspaceAddress.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo {
namespace {

TEST(WorkspaceAddress, NamesOneWorkspaceOrSaysWhatIsWrong) {
    const std::string id = "6f1c2a9e-0b7d-4e51-9c3a-2d4b8e7f1a60";
    const struct {
        std::string address;
        std::string named;  // or what the error says
    } cases[] = {
        {"quillo:restore?name=Morning%20desk", "Morning desk"},
        {"QUILLO:restore?name=A+B", "A+B"},
        {"quillo://restore/?name=caf%C3%A9%26co", "café&co"},
        {"quillo:restore?id=" + id, id},
        {addressOfWorkspace("50 % of “a&b”?#+"), "50 % of “a&b”?#+"},
        {"quillo:restore?id=Morning", "id is no identifier"},
        {"quillo:restore", "names no workspace"},
        {"quillo:restore?name=", "names no workspace"},
        {"quillo:restore?name=a&id=" + id, "more than one"},
        {"quillo:restore?name=a&quit=yes", "does not know"},
        {"quillo:delete?name=a", "does not do"},
        {"quillo://restore/other?name=a", "does not do"},
        {"http://restore?name=a", "none that Quillo reads"},
        {"quillo:restore?name=" + std::string(2000, 'a'), "too long"},
    };
    for (const auto& c : cases) {
        const Result<std::string> named = workspaceInAddress(c.address);
        if (named)
            EXPECT_EQ(*named, c.named) << c.address;
        else
            EXPECT_TRUE(named.error().text.contains(c.named)) << c.address << ": " << named.error().text;
    }
}

TEST(WorkspaceAddress, ANameMeansOneWorkspaceOnly) {
    const std::vector<Workspace> all{
        samples::named(Uuid::random(), "Work"), samples::named(Uuid::random(), "Twin"),
        samples::named(Uuid::random(), "twin"), samples::named(Uuid::random(), "Last")};
    EXPECT_EQ(workspaceCalled("wORK", all)->id, all[0].id);
    EXPECT_EQ(workspaceCalled(all[2].id.upper(), all)->id, all[2].id);
    EXPECT_EQ(workspaceCalled("Twin", all).error().text, "Several workspaces are called “Twin”.");
    EXPECT_EQ(workspaceCalled("None", all).error().kind, ErrorKind::notFound);
}

TEST(AskedByOthers, NothingIsResumedUnaskedUnlessThatIsAllowed) {
    samples::Model model;
    model.save("Work");
    model.save("Other");
    const Uuid work = model.named("Work").id;
    const auto open = [&](const char* address) {
        model->openAddress(address);
        model.run(std::chrono::seconds(1));
    };
    open("quillo:restore?name=nothing");
    EXPECT_TRUE(model->toast()->contains("No workspace is called “nothing”."));
    open("quillo:restore?name=work");
    ASSERT_TRUE(model->question());
    EXPECT_EQ(model->question()->asker, Asker::link);
    EXPECT_FALSE(model->question()->reason) << "it was saved here";
    open("quillo:restore?name=other");
    EXPECT_EQ(model->question()->workspace, work) << "the question was exchanged under the person's hand";
    model->answerQuestion(true);
    EXPECT_TRUE(model->restoreRunning());
    model.finishRestore();
    open("quillo:restore?name=work");
    ASSERT_TRUE(model->question()) << "one yes is for one time";
    model->answerQuestion(false);

    model->setAutomation(work, {.withoutAsking = true});
    open("quillo:restore?name=work");
    EXPECT_FALSE(model->question());
    model.finishRestore();
    EXPECT_EQ(model->restoreRun()->workspace().id, work);
    Workspace changed = model.named("Work");
    changed.snapshot.applications.clear();
    ASSERT_TRUE(model.store.save(changed));  // by anybody
    model->reload();
    open("quillo:restore?name=work");
    ASSERT_TRUE(model->question()) << "allowed was what the person had saved";
    EXPECT_EQ(model->question()->reason, ReasonToAsk::notSavedHere);
}

}  // namespace
}  // namespace quillo
