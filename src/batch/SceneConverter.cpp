#include "batch/SceneConverter.h"

#include <cerrno>
#include <cstring>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>

#include "app/Options.h"
#include "app/SceneSession.h"
#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "batch/InputRecorder.h"
#include "batch/MessageCatcher.h"
#include "batch/MessageTable.h"
#include "batch/PeakMemory.h"
#include "batch/SteadyCalls.h"
#include "batch/SteadyClock.h"
#include "check/CheckScene.h"
#include "gfx/KRE_Gfx.h"
#include "platform/headless/win32/ServedFile.h"
#include "platform/headless/win32/SyncedFiles.h"
#include "qsa/QSA_LoadOptions.h"
#include "qsb/QSB_TargetFile.h"
#include "qsb/SceneDirectory.h"
#include "qsb/WriteScene.h"

namespace {

/// An allocation that fails may come as an error of the engine.
bool IsOfMemory(const char* message)
{
    return std::strstr(message, "Not enough memory") || std::strstr(message, "Out of memory") ||
           std::strstr(message, "OUTOFMEMORY");
}

/// A small source has been read for its hash. The engine is given the same bytes, so it need not read them
/// again. Where it would take a backslash in the name for a separator, it shall fail as it does alone.
headless::ServedFile ServedSource(const std::string& leaf, const SmallContent& content)
{
    const bool isName = leaf.find('\\') == std::string::npos;
    return {leaf.c_str(), content.bytes.data(), isName ? content.size : 0};
}

std::string FirstLine(const std::string& text)
{
    return text.substr(0, text.find('\n'));
}

} // namespace

SceneConverter::SceneConverter(const WorkerSetup& setupIn)
    : setup(setupIn),
      start(OpenAt(AT_FDCWD, ".", O_PATH | O_DIRECTORY | O_CLOEXEC)),
      engine(setupIn.engineOptions)
{}

SceneResult SceneConverter::Convert(const SceneJob& job)
{
    const double began = SecondsOfClock();
    const int64_t readAt = FileClockNs();
    ResetPeakMemory();
    SceneResult made;
    // A source or a picture that changes under the reader is read once more.
    if (!Attempt(job, made) && !Attempt(job, made)) {
        made.status = SceneStatus::kFailed;
        // The reason of whatever else went wrong.
        made.messages.insert(made.messages.begin(), OwnMessage(kCodeSourceChanged));
    }
    made.source.changedNs = DependableTime(made.source, readAt);
    made.seconds = SecondsOfClock() - began;
    made.peakKiB = PeakMemoryKiB();
    return made;
}

/// False if a file changed while it was read, in which case nothing was written.
bool SceneConverter::Attempt(const SceneJob& job, SceneResult& resultOut)
{
    resultOut = SceneResult();
    result = &resultOut;
    hasChanged = false;
    MessageCatcher catching(resultOut);
    catcher = &catching;
    try {
        engine.Prepare();
        const SplitPath source(job.path);
        sourceDirectory = OpenDirectory(start.Get(), source.directory);
        if (!sourceDirectory.IsOpen() ||
            !StampOfFile(sourceDirectory.Get(), source.leaf.c_str(), resultOut.source, &content))
            Refuse(kCodeCannotOpen, std::strerror(errno));
        resultOut.hasSource = true;
        const ImportedScene imported = Import(job, source.leaf);
        const std::string& leaf = imported.leaf.empty() ? source.leaf : imported.leaf;
        if (imported.leaf.empty())
            sceneDirectory = OpenDirectory(start.Get(), source.directory);
        const WorkingDirectory inScene(sceneDirectory, start);
        const headless::ServingFile serving(imported.leaf.empty()
                                                ? ServedSource(leaf, content)
                                                : headless::ServedFile{leaf.c_str(), nullptr, 0});
        InputRecorder recorder(sceneDirectory, leaf);
        for (const std::string& input : imported.inputs)
            recorder.NoteFile(input);
        inputs = &recorder;
        SceneSession session;
        ConvertLoaded(job, leaf, session);
        resultOut.status = SceneStatus::kConverted;
        return true;
    } catch (const Refusal&) {
    } catch (const KRE_Error& error) {
        resultOut.status =
            IsOfMemory(error.message) ? SceneStatus::kOutOfMemory : SceneStatus::kFailed;
    } catch (const ErrorMsg& error) {
        resultOut.status =
            IsOfMemory(error.message) ? SceneStatus::kOutOfMemory : SceneStatus::kFailed;
    } catch (const std::bad_alloc&) {
        resultOut.status = SceneStatus::kOutOfMemory;
    }
    engine.MarkUsed();
    return !hasChanged && !HasSourceChanged(SplitPath(job.path).leaf);
}

/// A model becomes a scene in the directory of the target, where its pictures are wanted. A source that is a
/// scene stays as it is.
ImportedScene SceneConverter::Import(const SceneJob& job, const std::string& leaf)
{
    if (!setup.imports || IsSceneFile(leaf))
        return {};
    sceneDirectory = MakeDirectory(start.Get(), SplitPath(job.target).directory);
    if (!sceneDirectory.IsOpen())
        Refuse(kCodeTargetDirectory, std::strerror(errno));
    ImportedScene imported =
        ImportScene(PathOfDirectory(sourceDirectory) + "/" + leaf, PathOfDirectory(sceneDirectory),
                    setup.importOptions, setup.isConfined);
    for (const std::string& notice : imported.notices)
        catcher->Add(OwnMessage(kCodeNotCarried, notice));
    if (imported.leaf.empty())
        Refuse(kCodeNotImported, imported.fault);
    return imported;
}

/// An error may come from a file that was cut while it was read.
bool SceneConverter::HasSourceChanged(const std::string& leaf) const
{
    struct stat now;
    return result->hasSource && !result->isTargetWritten &&
           (fstatat(sourceDirectory.Get(), leaf.c_str(), &now, 0) != 0 ||
            !StampOf(now).HasSizeAndTimeOf(result->source));
}

void SceneConverter::ConvertLoaded(const SceneJob& job, const std::string& leaf,
                                   SceneSession& session)
{
    gGfx->SetLighting(gLightingOn, nullptr);
    gGfx->SetSpecular(gSpecularOn);
    session.Load(leaf.c_str());
    CountObjects(session);
    if (session.ObjectsInFile() == 0)
        catcher->Add(OwnMessage(kCodeNoObject));
    if (job.writesTarget)
        Save(job, session);
    else
        CheckNothingChanged(SplitPath(job.path).leaf);
    if (job.draws && !(setup.isStrict && job.writesTarget))
        Draw(job, session);
    if (!job.writesTarget)
        CheckStrictly();
    if (setup.checks && job.writesTarget)
        CheckTarget(job);
}

/// The frame of a strict run is drawn before the target takes its place, as it may bring warnings.
void SceneConverter::Save(const SceneJob& job, SceneSession& session)
{
    const SplitPath target(job.target);
    const Descriptor directory = MakeDirectory(start.Get(), target.directory);
    if (!directory.IsOpen() || !KeepNamesAbove(directory))
        Refuse(kCodeTargetDirectory, std::strerror(errno));
    const WorkingDirectory inTarget(directory, sceneDirectory);
    QSB_TargetFile file;
    file.CreateFor(target.leaf.c_str());
    WriteScene(session.Scene(), file);
    if (setup.isStrict && job.draws) {
        const WorkingDirectory inScene(sceneDirectory, directory);
        Draw(job, session);
    }
    CheckNothingChanged(SplitPath(job.path).leaf);
    CheckStrictly();
    file.Finish();
    result->isTargetWritten = true;
    StampTarget(directory, target.leaf);
}

/// In a durable run a new directory is on the disk before what is in it counts. Another worker may have made it just
/// now, so each one sees to it. A confined worker has done so while it could.
bool SceneConverter::KeepNamesAbove(const Descriptor& directory)
{
    if (!setup.isDurable || setup.isConfined)
        return true;
    const std::string path = PathOfDirectory(directory);
    if (kept.contains(path))
        return true;
    if (!headless::SyncNamesAbove(path))
        return false;
    kept.insert(path);
    return true;
}

void SceneConverter::StampTarget(const Descriptor& directory, const std::string& leaf)
{
    if (!StampOfFile(directory.Get(), leaf.c_str(), result->target))
        Refuse(kCodeTargetNotRead, std::strerror(errno));
}

void SceneConverter::CheckNothingChanged(const std::string& leaf)
{
    const bool areInputsSame = inputs->Finish(result->inputs);
    if (areInputsSame && !HasSourceChanged(leaf))
        return;
    hasChanged = true;
    throw Refusal();
}

void SceneConverter::CheckStrictly()
{
    if (setup.isStrict && result->Worst() == MessageLevel::kWarning)
        throw Refusal();
}

void SceneConverter::Draw(const SceneJob& job, SceneSession& session)
{
    engine.MarkUsed();
    char banner[kBannerSize];
    ReadBanner(banner);
    session.ShowFrame(banner);
    if (job.frame.empty() && !job.wantsThumb)
        return;
    const DrawnFrame frame = ReadDrawnFrame();
    if (job.wantsThumb)
        result->thumb = ThumbOf(frame);
    if (job.frame.empty())
        return;
    const SplitPath frameAt(job.frame);
    const Descriptor directory = MakeDirectory(start.Get(), frameAt.directory);
    if (!directory.IsOpen() || !KeepNamesAbove(directory))
        Refuse(kCodeFrameNotWritten, std::strerror(errno));
    const WorkingDirectory inFrames(directory, sceneDirectory);
    std::string reason;
    if (!KeepFrame(frame, frameAt.leaf, reason) ||
        !StampOfFile(directory.Get(), frameAt.leaf.c_str(), result->frame))
        Refuse(kCodeFrameNotWritten, reason);
    result->isFrameWritten = true;
}

/// Reads the written file as a scene of the source's directory, where its pictures are.
void SceneConverter::CheckTarget(const SceneJob& job)
{
    engine.MarkUsed();
    catcher->LeaveOutReports(); // they were the same when the source was read
    const SplitPath target(job.target);
    const Descriptor directory = OpenDirectory(start.Get(), target.directory);
    if (!directory.IsOpen())
        Refuse(kCodeTargetNotRead, std::strerror(errno));
    const std::string path = PathOfDirectory(directory) + "/" + target.leaf;
    KRE_3dScene scene;
    try {
        const SceneDirectory besideSource("");
        gGfx->LoadScene(scene, path.c_str(), kLoadSingleMipLevel);
    } catch (const KRE_Error& error) {
        Refuse(kCodeTargetNotLoaded, error.message);
    } catch (const ErrorMsg& error) {
        Refuse(kCodeTargetNotLoaded, error.message);
    }
    const std::string faults = CheckScene(scene);
    if (!faults.empty())
        Refuse(kCodeDamagedTarget, FirstLine(faults));
}

void SceneConverter::Refuse(uint16_t code, const std::string& what)
{
    catcher->Add(OwnMessage(code, what));
    throw Refusal();
}

void SceneConverter::CountObjects(SceneSession& session)
{
    KRE_3dScene& scene = session.Scene();
    SceneObjectCounts& counts = result->counts;
    counts.meshes = static_cast<uint32_t>(scene.meshes.Count());
    counts.objects = static_cast<uint32_t>(scene.objects.Count());
    counts.cameras = static_cast<uint32_t>(scene.cameras.Count());
    counts.lights = static_cast<uint32_t>(scene.lights.Count());
    for (const KRE_Mesh* mesh : scene.meshes) {
        counts.vertices += static_cast<uint64_t>(mesh->vertexCount);
        counts.faces += static_cast<uint64_t>(mesh->faceCount);
    }
}
