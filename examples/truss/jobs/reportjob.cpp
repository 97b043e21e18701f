// SPDX-License-Identifier: MIT
// truss: jobs
#include "truss/jobs/reportjob.h"

#include "truss/document/document.h"
#include "truss/document/documentfile.h"
#include "truss/model/model.h"
#include "truss/platform/temporaryfile.h"
#include "truss/text/text.h"

#include <kel/appversion.h>
#include <kel/branding.h>
#include <kel/formdataposter.h>
#include <kel/kelversion.h>
#include <kel/log_kel.h>
#include <kel/platform.h>
#include <kel/translator.h>
#include <kel/version.h>

namespace truss
{
ReportJob::ReportJob(Document& document, const Ztring& address)
    : Job(Translator::tr("Sending the report")),
      m_document(document),
      m_address(address)
{
}

bool ReportJob::step()
{
    FormDataPoster form;
    addFields(form);
    addDocument(form);
    Ztring reply;
    form.postTo(m_address, Ztring(), reply);
    Kel::Log::getSingleton()->append(fill(Translator::tr("The server replied: %1"), reply), Message::Info);
    return false;
}

void ReportJob::addFields(FormDataPoster& form) const
{
    std::string versions;
    AppVersion::getCurrent()->appendAsUrlArg(versions);
    KelVersion::getCurrent()->appendAsUrlArg(versions);
    Ztring credit;
    Branding::getSingleton()->appendCredit(credit);
    Platform* const platform = Platform::getSingleton();

    form.addField("program", Branding::getSingleton()->getProduct());
    form.addField("version", versions);
    form.addField("system", platform->getOsBitName() + ' ' + platform->getReleaseName());
    form.addField("credit", credit);
}

void ReportJob::addDocument(FormDataPoster& form) const
{
    const TemporaryFile file;
    DocumentFile::save(m_document.getModel(), file.getFile());
    form.addFile("document", "document.truss", "application/octet-stream", file.getFile());
}
} // namespace truss
