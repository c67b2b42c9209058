#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "calc/redistribution/net_mass.h"
#include "calc/redistribution/stat_value.h"
#include "calc/redistribution/transport.h"
#include "support/installation.h"
#include "support/sample_lines.h"

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

namespace calc {
namespace {

using test_support::AddLine;
using test_support::Installation;
using test_support::LineValues;
using testing::ElementsAre;
using testing::HasSubstr;
using enum Redis_Mod;
using enum Redis_Op;

const store::Value kNull;
const declarations::Identity kArrivals{"I", Installation::kCompany, 2026, 3};
const declarations::Identity kDispatches{"O", Installation::kCompany, 2026, 3};
constexpr char kFilterI[] = " WHERE [TIP] ='I' AND [Anul]=2026 AND [Luna]=3";

class RedistributionTest : public testing::Test {
 protected:
  session::Session& session() { return at_.session; }
  std::int64_t Line(const std::string& TIP, const LineValues& changes) {
    return AddLine(session(), TIP, 2026, 3, changes);
  }
  store::Value Stored(std::int64_t id, const std::string& column) {
    return at_.Get("SELECT [" + column + "] FROM Intrastat WHERE Record_ID=" + std::to_string(id));
  }
  std::string Log() { return at_.files().Read(Installation::InSystem("Erori\\erori.txt")); }
  void ExpectDone(int groups) {
    at_.prompter().ExpectInfo("Redistribuire terminata. Distribuire pe :" + std::to_string(groups) +
                              " linii");
  }
  /// Ticks the row and enters its amount.
  static void Enter(GroupCalculation& groups, std::int64_t row, const LineValues& values) {
    groups.rows().set_position(row);
    for (const auto& [field, value] : values) groups.rows().Set(field, value);
    groups.rows().Update();
  }

  Installation at_;
};

std::vector<std::string> Captions(const GroupCalculation& groups) {
  std::vector<std::string> captions;
  for (const GroupColumn& column : groups.Columns()) {
    captions.push_back(column.caption + (column.editable ? "!" : "") + column.format);
  }
  return captions;
}

TEST_F(RedistributionTest, TransportListsAreReadAsTheOptionsSay) {
  TransportRedistribution arrivals{session(), kArrivals};
  TransportRedistribution dispatches{session(), kDispatches};
  // Imported dispatches carry no sending country: it must not be part of the group's key.
  Line("O", {{"Tara_Exp", kNull}});
  arrivals.Choose(Redis_Mod_Cantitate, Redis_Op_Doc);
  EXPECT_EQ(arrivals.ListStatement(), std::string("SELECT * FROM Intrastat_Grup_Document") + kFilterI +
                                          " AND TOTAL_Cantitate <> 0 ORDER BY Factura_Numar");
  arrivals.Choose(Redis_Mod_Net, Redis_Op_Incoterms);
  EXPECT_EQ(arrivals.ListStatement(), std::string("SELECT * FROM Intrastat_Grup_Incoterms_I") + kFilterI +
                                          " AND TOTAL_Net <> 0 ORDER BY Incoterms, Tara_Exp, Mod_Transp");
  EXPECT_THAT(Captions(arrivals),
              ElementsAre("Redistribuie!", "Cond livrare", "Tara Exp", "Mod transp",
                          "Suma de redistribuit!##,##0.00", "Moneda Optional!", "Curs  Optional!##,##0.0000",
                          "Factura Transp. Optional!", "Cantitate##,##0.0000", "Valoare Valuta##,##0.00",
                          "Valoare Fiscala##,##0.00", "Net [Kg]##,##0.0000", "Moneda"));
  arrivals.Choose(Redis_Mod_Valoare, Redis_Op_VAT);
  EXPECT_EQ(arrivals.ListStatement(),
            std::string("SELECT * FROM Intrastat_Grup_VAT") + kFilterI +
                " AND TOTAL_Val_Fiscala <> 0ORDER BY VAT_ID, Incoterms, Mod_Transp");
  dispatches.Choose(Redis_Mod_Cantitate, Redis_Op_Incoterms);
  ASSERT_EQ(dispatches.rows().record_count(), 1);
  EXPECT_EQ(dispatches.Condition(dispatches.rows()),
            "TIP='O' AND Cod_Fiscal='RO123456' AND Anul=2026 AND Luna=3 AND Incoterms='EXW' AND "
            "Tara_Dest='IT' AND Mod_Transp='3'");
  EXPECT_THROW(arrivals.Choose(Redis_Mod_Net, Redis_Op_CodVamal), std::invalid_argument);
}

TEST_F(RedistributionTest, TransportIsSharedByKeyRoundedLineByLine) {
  std::vector<std::int64_t> ids;
  for (int i = 0; i < 3; ++i) {
    ids.push_back(Line("I", {{"Factura_Numar", "F1"}, {"Cantitate", 1.0}, {"Val_Fiscala", 100.0}}));
  }
  const std::int64_t other = Line("I", {{"Factura_Numar", "F2"}, {"Transport_Suma", 5.0}, {"Val_Stat", 7.0}});
  const std::int64_t zero = Line("I", {{"Factura_Numar", "F3"}, {"Cantitate", 0.0}});
  TransportRedistribution transport{session(), kArrivals};
  transport.Choose(Redis_Mod_Cantitate, Redis_Op_Doc);
  ASSERT_EQ(transport.rows().record_count(), 2) << "no quantity to share by in F3";
  Enter(transport, 0,
        {{"Redistribuie", true},
         {"Total_Transport_Suma", 100.0},
         {"Transport_Moneda", "EUR"},
         {"Transport_Curs", 4.97514},
         {"Transp_Document", "T 1"}});
  EXPECT_EQ(Stored(ids[0], "Transport_Suma"), kNull) << "what is typed stays in memory";
  EXPECT_THAT(
      transport.Statements(transport.rows()),
      ElementsAre("UPDATE Intrastat SET Transport_Suma=ROUND(Cantitate*33.333333333333336,4), "
                  "Transp_Document='T 1', Transport_Moneda='EUR', Transport_Curs=4.9751 WHERE TIP='I' "
                  "AND Cod_Fiscal='RO123456' AND Anul=2026 AND Luna=3 AND Factura_Numar='F1'",
                  "UPDATE Intrastat SET Val_Stat = Val_Fiscala + ROUND(Transport_Suma * "
                  "Transport_Curs, 2) WHERE TIP='I' AND Cod_Fiscal='RO123456' AND Anul=2026 AND "
                  "Luna=3 AND Factura_Numar='F1'"));
  const std::vector<GroupFigures> plan = transport.Preview();
  ASSERT_EQ(plan.size(), 1U);
  EXPECT_EQ(plan[0].group, "Factura Numar F1");
  EXPECT_EQ(plan[0].lines, 3);
  EXPECT_EQ(plan[0].difference, 0.0001);
  EXPECT_TRUE(plan[0].remarks.empty());

  ExpectDone(1);
  const RunReport report = transport.CmdAjustare();
  ASSERT_EQ(report.figures.size(), 1U);
  EXPECT_EQ(report.figures[0].difference, 0.0001);
  EXPECT_EQ(report.figures[0].Val_Stat, plan[0].Val_Stat);
  for (const std::int64_t id : ids) {
    EXPECT_EQ(Stored(id, "Transport_Suma"), 33.3333);
    EXPECT_EQ(Stored(id, "Val_Stat"), 100 + 165.84);
    EXPECT_EQ(Stored(id, "Transp_Document"), "T 1");
  }
  EXPECT_EQ(Stored(other, "Val_Stat"), 7.0) << "not ticked";

  // What was entered stays with the group under another key; without currency and rate it is lei.
  transport.Choose(Redis_Mod_Valoare, Redis_Op_Doc);
  ASSERT_EQ(transport.rows().record_count(), 3);
  EXPECT_EQ(transport.rows()["Total_Transport_Suma"], 100.0);
  Enter(transport, 0,
        {{"Total_Transport_Suma", -30.0}, {"Transport_Moneda", " "}, {"Transport_Curs", kNull}});
  ExpectDone(1);
  transport.CmdAjustare();
  EXPECT_EQ(Stored(ids[1], "Val_Stat"), 90.0);
  EXPECT_EQ(Stored(ids[1], "Transport_Moneda"), "RON");
  EXPECT_EQ(Stored(ids[1], "Transport_Curs"), 1.0);

  const char question[] = "Sterg toate sumele redistribuite in aceasta declaratie Intrastat ?";
  at_.prompter().ExpectQuestion(question, "RASPUNDETI", platform::Icon::kQuestion, false);
  EXPECT_EQ(transport.CmdStergeRedistribuire(), std::nullopt);
  EXPECT_EQ(Stored(ids[1], "Val_Stat"), 90.0);
  at_.prompter().ExpectQuestion(question, "RASPUNDETI", platform::Icon::kQuestion, true);
  EXPECT_EQ(transport.CmdStergeRedistribuire(), 5);
  EXPECT_EQ(Stored(zero, "Val_Stat"), 100.0) << "also lines that never had a share";
  EXPECT_EQ(Stored(other, "Transport_Suma"), kNull);
  EXPECT_EQ(Stored(ids[1], "Transp_Document"), kNull);
}

TEST_F(RedistributionTest, AFailingGroupIsPassedOverAndTold) {
  const std::int64_t failing = Line("I", {{"Factura_Numar", "F'1"}, {"Val_Stat", 110.0}});
  const std::int64_t document = Line("I", {{"Factura_Numar", "F2"}, {"Val_Stat", 110.0}});
  const std::int64_t without = Line("I", {{"Factura_Numar", kNull}, {"Val_Stat", 110.0}});
  const std::int64_t fine = Line("I", {{"Factura_Numar", "F3"}, {"Incoterms", "CPT"}});
  TransportRedistribution transport{session(), kArrivals};
  transport.Choose(Redis_Mod_Net, Redis_Op_Doc);
  for (std::int64_t row = 0; row < 4; ++row) {
    Enter(transport, row, {{"Redistribuie", true}, {"Total_Transport_Suma", 8.0}});
  }
  Enter(transport, 2, {{"Transp_Document", "O'Neil"}, {"Transport_Moneda", "EUR"}});
  ASSERT_EQ(transport.rows()["Factura_Numar"], "F2");
  const std::vector<GroupFigures> plan = transport.Preview();
  EXPECT_THAT(plan[0].remarks, ElementsAre(HasSubstr("date")));
  EXPECT_EQ(plan[0].lines, 0);
  EXPECT_THAT(plan[1].remarks, ElementsAre(HasSubstr("apostrof")));
  EXPECT_THAT(plan[2].remarks, ElementsAre(HasSubstr("apostrof"), HasSubstr("EUR nu are curs")));
  EXPECT_TRUE(plan[3].remarks.empty());

  transport.rows().SetSort("Factura_Numar DESC");  // the grid's order is not the run's
  ExpectDone(4);
  const RunReport report = transport.CmdAjustare();
  EXPECT_EQ(report.figures[0].group, "Factura Numar (gol)");
  EXPECT_NE(report.figures[1].error, "");
  EXPECT_NE(report.figures[2].error, "");
  EXPECT_EQ(report.figures[3].error, "");
  for (const std::int64_t id : {failing, document, without}) EXPECT_EQ(Stored(id, "Val_Stat"), 110.0);
  EXPECT_EQ(Stored(fine, "Val_Stat"), 108.0);
  EXPECT_THAT(Log(), HasSubstr("Redistribuire transport"));
}

TEST_F(RedistributionTest, StoppingARunLeavesEverythingAsItWas) {
  const std::int64_t id = Line("I", {{"Factura_Numar", "F1"}});
  NetRedistribution net{session(), kArrivals};
  net.Choose(Redis_Mod_Cantitate, Redis_Op_Doc);
  Enter(net, 0, {{"Redistribuie", true}, {"Total_GreutateNeta", 77.0}});
  at_.machine.progress.cancelled = true;
  at_.prompter().ExpectMessage("Calculul a fost oprit, nu s-a modificat nicio linie", "MESAJ",
                               platform::Icon::kExclamation);
  EXPECT_TRUE(net.CmdAjustare().cancelled);
  EXPECT_EQ(Stored(id, "Net"), 10.0);
  EXPECT_FALSE(session().company.in_transaction());
}

TEST_F(RedistributionTest, ALockedFileStopsTheRunAtOnce) {
  Line("I", {{"Factura_Numar", "F1"}});
  NetRedistribution net{session(), kArrivals};
  net.Choose(Redis_Mod_Cantitate, Redis_Op_Doc);
  Enter(net, 0, {{"Redistribuie", true}, {"Total_GreutateNeta", 77.0}});
  store::Connection other{session::StoreEnvironment(session())};
  other.Open(store::JetString(session().current.database_path));
  store::Transaction writing(other);
  other.Execute("UPDATE Intrastat SET Probleme=1");
  EXPECT_THROW(net.CmdAjustare(), store::Error) << "no closing message for a run that could not begin";
  EXPECT_FALSE(session().company.in_transaction());
}

TEST_F(RedistributionTest, NetMassFollowsQuantityOrValue) {
  std::vector<std::int64_t> ids;
  for (const char* code : {"84713000", "84713000", "84713000", "85044090"}) {
    ids.push_back(Line("I", {{"Cod_NC", code}, {"Cantitate", 1.0}, {"Factura_Numar", "F1"}}));
  }
  Line("I", {{"Cod_NC", "85044091"}, {"Val_Fiscala", 0.0}});
  NetRedistribution net{session(), kArrivals};
  net.Choose(Redis_Mod_Valoare, Redis_Op_CodVamal);
  EXPECT_EQ(net.ListStatement(), std::string("SELECT * FROM Intrastat_Grup_CodVamal_Greutate") + kFilterI +
                                     " AND TOTAL_Val_Fiscala <> 0 ORDER BY Cod_NC");
  EXPECT_THAT(Captions(net), ElementsAre("Redistribuie!", "Cod vamal", "Greutate de redistribuit!##,##0.00",
                                         "Cantitate##,##0", "Valoare Valuta##,##0.00",
                                         "Valoare Fiscala##,##0.00", "Moneda"));
  ASSERT_EQ(net.rows().record_count(), 2) << "a code without value is not listed";
  Enter(net, 0, {{"Redistribuie", true}, {"Total_GreutateNeta", 10.0}});
  EXPECT_THAT(
      net.Statements(net.rows()),
      ElementsAre("UPDATE Intrastat SET Net=ROUND(Val_Fiscala*0.03333333333333333,2) WHERE TIP='I' AND "
                  "Cod_Fiscal='RO123456' AND Anul=2026 AND Luna=3 AND Cod_NC='84713000'"));
  ExpectDone(1);
  const RunReport report = net.CmdAjustare();
  EXPECT_EQ(report.figures[0].difference, 0.01);
  EXPECT_EQ(Stored(ids[0], "Net"), 3.33);
  EXPECT_EQ(Stored(ids[0], "Val_Stat"), 110.0);
  EXPECT_EQ(Stored(ids[3], "Net"), 10.0) << "not ticked";
}

TEST_F(RedistributionTest, PercentagesRaiseTheInvoicedValue) {
  const std::int64_t raised = Line("I", {{"Val_Fiscala", 1000.0}});
  const std::int64_t half = Line("I", {{"Val_Fiscala", 0.2}});
  const std::int64_t free = Line("I", {{"Val_Fiscala", 0.0}, {"Raport_Stat", 3.0}});
  const std::int64_t credit = Line("I", {{"Val_Fiscala", -100.0}});
  const std::int64_t sea = Line("I", {{"Mod_Transp", "1"}, {"Val_Fiscala", 10.126}});
  const std::int64_t without = Line("I", {{"Incoterms", kNull}, {"Val_Stat", 5.0}});
  const std::int64_t dispatch = Line("O", {});
  StatValueRecalculation recalculation{session(), kArrivals};
  EXPECT_EQ(recalculation.ListStatement(),
            std::string("SELECT * FROM Intrastat_Grup_Recalculare_I") + kFilterI);
  recalculation.Load();
  EXPECT_THAT(Captions(recalculation),
              ElementsAre("Cond livrare", "Mod transp", "Nat Tranz", "Tara Exp", "Procent!##,##0.0000"));
  recalculation.rows().SetFilter("Mod_Transp = '3' AND Incoterms = 'CPT'");
  ASSERT_EQ(recalculation.rows().record_count(), 1);
  recalculation.rows().Set("Procent", 2.5);
  recalculation.rows().Update();
  EXPECT_THAT(
      recalculation.Statements(recalculation.rows()),
      ElementsAre("UPDATE INTRASTAT SET Val_Stat = ROUND(Val_Fiscala + (Val_Fiscala * 2.5/ 100),2),  "
                  "Raport_Stat = (Val_Fiscala + (Val_Fiscala * 2.5/ 100)) / Val_Fiscala  WHERE  "
                  "Intrastat.Tip ='I' AND Intrastat.Cod_Fiscal ='RO123456' AND Intrastat.Anul =2026 AND "
                  "Intrastat.Luna =3 AND Intrastat.Incoterms ='CPT' AND Intrastat.Mod_Transp = '3' AND "
                  "Intrastat.Nat_Tranz = '1.1' AND Intrastat.Tara_Exp = 'DE'"));
  at_.prompter().ExpectInfo("Recalculare Terminata");
  const RunReport report = recalculation.CmdAjustare();
  EXPECT_EQ(report.groups, 3);
  EXPECT_EQ(Stored(raised, "Val_Stat"), 1025.0);
  EXPECT_EQ(Stored(raised, "Raport_Stat"), 1.025);
  EXPECT_EQ(Stored(half, "Val_Stat"), 0.2) << "0.205: the half goes to the even neighbour";
  EXPECT_EQ(Stored(credit, "Val_Stat"), -102.5);
  EXPECT_EQ(Stored(free, "Val_Stat"), 0.0);
  EXPECT_EQ(Stored(free, "Raport_Stat"), kNull);
  EXPECT_THAT(Log(), HasSubstr("Record_ID " + std::to_string(free) + "\r\n"));
  EXPECT_EQ(Stored(sea, "Val_Stat"), 10.13) << "0 % sets the rounded invoiced value";
  EXPECT_EQ(Stored(sea, "Raport_Stat"), 1.0);
  EXPECT_EQ(Stored(without, "Val_Stat"), 5.0) << "no equality meets an empty key";
  EXPECT_EQ(Stored(dispatch, "Val_Stat"), 110.0);

  StatValueRecalculation dispatches{session(), kDispatches};
  dispatches.Load();
  EXPECT_THAT(dispatches.ListStatement(), HasSubstr("Intrastat_Grup_Recalculare_O"));
  EXPECT_THAT(dispatches.Condition(dispatches.rows()), testing::EndsWith("AND Intrastat.Tara_Dest = 'IT'"));
}

TEST_F(RedistributionTest, ManyGroupsGiveWhatFewDo) {
  // Beyond ten walks over the file's lines the run sorts them once; nothing of that may stay.
  for (int i = 0; i < 40; ++i) {
    Line("I", {{"Factura_Numar", "F" + std::to_string(i)},
               {"Val_Fiscala", 10.0 + i},
               {"VAT_ID", "de" + std::to_string(i / 2)}});
  }
  Line("I", {{"Factura_Numar", "f7"}, {"Val_Fiscala", 17.0}});
  TransportRedistribution transport{session(), kArrivals};
  transport.Choose(Redis_Mod_Valoare, Redis_Op_Doc);
  ASSERT_EQ(transport.rows().record_count(), 40) << "texts group without regard to case";
  for (std::int64_t row = 0; row < 40; ++row) {
    Enter(transport, row, {{"Redistribuie", true}, {"Total_Transport_Suma", 1.0}});
  }
  ExpectDone(40);
  const RunReport report = transport.CmdAjustare();
  for (const GroupFigures& figures : report.figures) EXPECT_EQ(figures.shared, 1.0) << figures.group;
  EXPECT_EQ(at_.Get("SELECT COUNT(*) FROM Intrastat WHERE Transport_Suma=0.5"), 2);
  // The name is free again.
  EXPECT_EQ(at_.Run("CREATE INDEX Redistribuire ON Intrastat (Anul)"), 0);
}

#ifndef _WIN32
/// Ends the process near the end of the run.
class KillingProgress : public platform::SilentProgress {
 public:
  void Update(std::string_view, int percent) override {
    if (percent >= 90) raise(SIGKILL);
  }
};

TEST_F(RedistributionTest, AKilledRunLeavesTheStateBeforeIt) {
  for (int i = 0; i < 20; ++i) {
    Line("I", {{"Factura_Numar", "F" + std::to_string(i)}});
  }
  session().company.Close();
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    KillingProgress progress;
    platform::Host host{at_.machine.files, at_.machine.clock, at_.machine.prompter, progress,
                        at_.machine.errors};
    session::Session own{host};
    own.settings = session().settings;
    session::OpenCompanyConnection(own, session().current.database_path);
    TransportRedistribution transport{own, kArrivals};
    transport.Choose(Redis_Mod_Cantitate, Redis_Op_Doc);
    for (std::int64_t row = 0; row < 20; ++row) {
      Enter(transport, row, {{"Redistribuie", true}, {"Total_Transport_Suma", 8.0}});
    }
    transport.CmdAjustare();
    _exit(1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_TRUE(WIFSIGNALED(status));
  session::OpenCompanyConnection(session(), session().current.database_path);
  EXPECT_EQ(at_.Get("SELECT COUNT(*) FROM Intrastat WHERE Val_Stat=110 AND Transport_Suma IS NULL"), 20);
  EXPECT_EQ(at_.Run("CREATE INDEX Redistribuire ON Intrastat (Anul)"), 0) << "no index of the run is left";
}
#endif

}  // namespace
}  // namespace calc
