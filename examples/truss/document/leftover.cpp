// SPDX-License-Identifier: MIT
// truss: document
#include "truss/document/leftover.h"

#include "truss/document/documentfile.h"
#include "truss/model/model.h"
#include "truss/text/text.h"

#include <kel/interrupted.h>
#include <kel/log_kel.h>
#include <kel/platform.h>
#include <kel/problem.h>
#include <kel/translator.h>

#include <filesystem>
#include <system_error>

namespace truss
{
Leftover::Leftover(const Kel::File& document)
    : m_document(DocumentFile::followLink(document)),
      m_file(Ztring(m_document.getPath()).append(".tmp"))
{
}

bool Leftover::exists() const
{
    std::error_code error;
    return std::filesystem::is_regular_file(m_file.getPath().toUtf8(), error); // to open a pipe would take for ever
}

bool Leftover::isWhole() const
try
{
    DocumentFile::open(m_file);
    return true;
}
catch (Interrupted&)
{
    throw;
}
catch (Problem&)
{
    return false;
}

void Leftover::report() const
{
    if (!exists())
        return;
    const Ztring message =
        isWhole() ? Translator::tr(
                        "A save of '%1' did not end. It left a whole document, '%2', which the option -recover takes")
                  : Translator::tr("A save of '%1' did not end. It left '%2', which is not whole");
    Kel::Log::getSingleton()->append(fill(message, m_document.getPath(), m_file.getPath()), Message::Warning);
}

BulletinPtr<Model> Leftover::recover() const
{
    BulletinPtr<Model> model = DocumentFile::open(m_file);
    Platform::getSingleton()->moveFile(m_file, m_document, false);
    return model;
}
} // namespace truss
