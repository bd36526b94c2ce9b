#include "base/CFileValidator.h"

#include "base/Paths.h"

static String Join(const String& directory, const String& name)
{
    String path(directory);
    path.Append(name.c_str());
    return path;
}

void CFileValidator::Clear()
{
    directories.Clear();
    extensions.Clear();
    basePath.Clear();
}

void CFileValidator::AddDirectory(const char* path, bool matchLeaf)
{
    DirData directory;
    directory.path.Assign(path);
    EnsureTrailingSlash(&directory.path);
    directory.matchLeaf = matchLeaf ? 1 : 0;
    directories.Added(directories.Add(&directory));
}

void CFileValidator::AddExtension(const char* extension)
{
    const String added(extension);
    extensions.Added(extensions.Add(&added));
}

void CFileValidator::SetBasePath(const char* path)
{
    basePath.Assign(path);
    EnsureTrailingSlash(&basePath);
}

bool CFileValidator::Exists(const String& name, String* pathOut) const
{
    if (FileExists(name.c_str())) {
        pathOut->Assign(name);
        return true;
    }
    for (const String* extension : extensions) {
        String candidate;
        ChangeExtension(name, &candidate, extension->c_str());
        if (FileExists(candidate.c_str())) {
            pathOut->Assign(candidate);
            return true;
        }
    }
    pathOut->Clear();
    return false;
}

String CFileValidator::Resolve(const String& name) const
{
    String path;
    if (name.IsEmpty())
        return path;
    String leaf;
    GetLeafName(name, &leaf);
    const bool hasDirectory = leaf.TextLength() != name.TextLength();
    const bool found = IsAbsolutePath(name) ? ResolveAbsolute(name, leaf, hasDirectory, &path)
                                            : ResolveRelative(name, leaf, hasDirectory, &path);
    if (!found)
        path.Clear();
    return path;
}

bool CFileValidator::ResolveRelative(const String& name, const String& leaf, bool hasDirectory,
                                     String* pathOut) const
{
    if (Exists(Join(basePath, name), pathOut))
        return true;
    for (const DirData* directory : directories) {
        if (Exists(Join(directory->path, name), pathOut))
            return true;
        if (hasDirectory && directory->matchLeaf && Exists(Join(directory->path, leaf), pathOut))
            return true;
    }
    return false;
}

bool CFileValidator::ResolveAbsolute(const String& name, const String& leaf, bool hasDirectory,
                                     String* pathOut) const
{
    if (Exists(name, pathOut))
        return true;
    if (!hasDirectory)
        return false;
    for (const DirData* directory : directories) {
        if (directory->matchLeaf && Exists(Join(directory->path, leaf), pathOut))
            return true;
    }
    return false;
}
