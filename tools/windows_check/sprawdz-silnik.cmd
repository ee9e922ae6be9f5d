@echo off
rem Puts the contract and the four tasks through the database engine of this Windows, and the tasks through the
rem embedded one. Everything that was seen goes into raport.txt beside this file, the summary into its last line.
rem   sprawdz-silnik.cmd [/q]     /q: without waiting for a key at the end
rem Exit status: 0 nothing failed, 1 something did, 2 the check could not be made.
setlocal
rem In a network folder this takes a drive letter, given back at the end.
pushd "%~dp0"
if not exist struktury\faktury.stb goto :nowhere
set "RAPORT=%~dp0raport.txt"
set "WYNIK=%~dp0wynik"
if exist "%WYNIK%" rmdir /s /q "%WYNIK%"
mkdir "%WYNIK%"
mkdir "%WYNIK%\temp"
if not exist "%WYNIK%\temp" goto :nowhere
rem Working copies and everything else stay in this folder.
set "TEMP=%WYNIK%\temp"
set "TMP=%WYNIK%\temp"
set "ZIMBRAT_SILNIK="
set "ZIMBRAT_HASLO="
set UDANE=0
set NIEUDANE=0
set BRAK=0
if exist "%RAPORT%" del "%RAPORT%"
>"%RAPORT%" echo Zimbrat baz danych: sprawdzenie silnika, %date% %time%
if not exist "%RAPORT%" goto :nowhere

call :tell_windows >>"%RAPORT%" 2>&1
for %%B in (64 32) do call :check_half %%B

set STAN=0
if not %NIEUDANE%==0 set STAN=1
>>"%RAPORT%" echo.
>>"%RAPORT%" echo PODSUMOWANIE: udane %UDANE%, nieudane %NIEUDANE%, nie do wykonania %BRAK%
echo PODSUMOWANIE: udane %UDANE%, nieudane %NIEUDANE%, nie do wykonania %BRAK%
echo Raport: "%RAPORT%"
if not "%~1"=="/q" pause
popd
exit /b %STAN%

:nowhere
echo Brak prawa zapisu w tym folderze. Skopiuj go na inny dysk.
if not "%~1"=="/q" pause
popd
exit /b 2

rem --- Windows and its engines ---

:tell_windows
ver
echo Procesor: %PROCESSOR_ARCHITECTURE% %PROCESSOR_ARCHITEW6432%
reg query "HKLM\SOFTWARE\Microsoft\Windows NT\CurrentVersion" /v ProductName
reg query HKLM\SYSTEM\CurrentControlSet\Control\Nls\CodePage /v ACP
reg query HKLM\SYSTEM\CurrentControlSet\Control\Nls\CodePage /v OEMCP
for %%V in (LocaleName sDecimal sShortDate) do reg query "HKCU\Control Panel\International" /v %%V
chcp
for %%N in (35 36 120 140 150 160 170) do for %%B in (64 32) do call :tell_class %%N %%B
rem Where the libraries of DAO 3.6 and of the newer engines lie.
for %%C in ({00000100-0000-0010-8000-00AA006D2EA4} {CD7791B9-43FD-42C5-AE42-8DD2811F0419}) do (
  for %%B in (64 32) do reg query "HKLM\SOFTWARE\Classes\CLSID\%%C\InprocServer32" /ve /reg:%%B 2>nul
)
exit /b 0

:tell_class
reg query "HKLM\SOFTWARE\Classes\DAO.DBEngine.%1\CLSID" /ve /reg:%2 >nul 2>&1
if errorlevel 1 (echo DAO.DBEngine.%1, %2 bity: nie ma) else (echo DAO.DBEngine.%1, %2 bity: jest)
exit /b 0

rem --- the programs of one bitness ---

:check_half
set BITY=%1
call :title Programy %1-bitowe
"%1\zimbratc.exe" --wersja >"%WYNIK%\wersja.txt" 2>&1
set STAN=%errorlevel%
rem A system that cannot run the program may say nothing at all and be content.
for %%F in ("%WYNIK%\wersja.txt") do if %%~zF==0 set STAN=9
type "%WYNIK%\wersja.txt" >>"%RAPORT%"
if not %STAN%==0 (
  call :skip Nie do uruchomienia w tym systemie.
  exit /b 0
)
call :step "%1\zimbratc.exe" silnik
call :check_contract
call :check_tasks zainstalowany
call :check_tasks wbudowany
if exist "%BITY%\Sprawdzenia.log" (
  call :title Sprawdzenia.log
  type "%BITY%\Sprawdzenia.log" >>"%RAPORT%"
)
if not exist "%WYNIK%\%BITY%-zainstalowany\wiersze.txt" exit /b 0
call :title Wiersze z obu baz, %BITY% bity
call :step fc "%WYNIK%\%BITY%-zainstalowany\wiersze.txt" "%WYNIK%\%BITY%-wbudowany\wiersze.txt"
exit /b 0

:check_contract
call :title Umowa z silnikiem, %BITY% bity
"%BITY%\dao_installed_tests.exe" >"%WYNIK%\umowa-%BITY%.txt" 2>&1
set STAN=%errorlevel%
type "%WYNIK%\umowa-%BITY%.txt" >>"%RAPORT%"
if %STAN%==3 (
  call :skip Nie ma silnika.
  exit /b 0
)
call :count
exit /b 0

rem --- the four tasks with one engine ---

:check_tasks
set SILNIK=%1
call :title Zadania, silnik %SILNIK%, %BITY% bity
"%BITY%\zimbratc.exe" silnik --silnik %SILNIK% >>"%RAPORT%" 2>&1
if not %errorlevel%==0 (
  call :skip Nie ma takiego silnika.
  exit /b 0
)
set "BAZY=%WYNIK%\%BITY%-%SILNIK%"
set "Z=%BITY%\zimbratc.exe"
set "WYBOR=--silnik %SILNIK%"
mkdir "%BAZY%"
call :step "%Z%" nowa --folder "%BAZY%" --nazwa Firma --struktury struktury\faktury.stb --od 1/2025 --do 12/2025 %WYBOR%
call :step "%Z%" dodaj --baza "%BAZY%\Firma.mdb" --struktury struktury\kadry.stb %WYBOR%
rem Rows come in as statements of structure files, so that they are the engine's own work.
for %%F in (struktury\wiersze\*.stb) do call :step "%Z%" sprawdz --baza "%BAZY%\Firma.mdb" --struktury %%F %WYBOR%
set NOWE=struktury\nowe\faktury.stb,struktury\kadry.stb
call :step "%Z%" sprawdz --baza "%BAZY%\Firma.mdb" --struktury %NOWE% %WYBOR%
call :step "%Z%" sprawdz --baza "%BAZY%\Firma.mdb" --struktury %NOWE% %WYBOR%
call :step "%Z%" stan --baza "%BAZY%\Firma.mdb" --folder-struktur struktury\nowe %WYBOR%
call :step "%Z%" wzorzec --wzorzec "%BAZY%\Firma.mdb" --folder "%BAZY%" --nazwa Wzorzec --od 1/2026 --do 12/2026 %WYBOR%
for %%N in (Firma Wzorzec) do call :step "%BITY%\jetcheck.exe" "%BAZY%\%%N.mdb"
for %%N in (Firma Wzorzec) do call :read_rows %%N
call :check_protected
call :check_damaged
exit /b 0

rem The password opens it, is still there after a change of the database, and nothing opens it without.
:check_protected
call :title Baza z haslem, silnik %SILNIK%, %BITY% bity
copy /y bazy\Chroniona.mdb "%BAZY%" >nul
set "ZIMBRAT_HASLO=Tajne 2025"
call :step "%Z%" sprawdz --baza "%BAZY%\Chroniona.mdb" --struktury struktury\nowe\faktury.stb %WYBOR%
call :step "%Z%" stan --baza "%BAZY%\Chroniona.mdb" --folder-struktur struktury\nowe %WYBOR%
set "ZIMBRAT_HASLO="
call :step "%BITY%\jetcheck.exe" "%BAZY%\Chroniona.mdb"
>>"%RAPORT%" echo.
>>"%RAPORT%" echo $ zimbratc stan, bez hasla: ma byc blad 3031
rem With an input that is nobody's it does not ask.
"%Z%" stan --baza "%BAZY%\Chroniona.mdb" --folder-struktur struktury\nowe %WYBOR% <nul >"%WYNIK%\bez-hasla.txt" 2>&1
set STAN=%errorlevel%
type "%WYNIK%\bez-hasla.txt" >>"%RAPORT%"
find "3031" "%WYNIK%\bez-hasla.txt" >nul
if errorlevel 1 set STAN=0
if %STAN%==0 (set STAN=9) else (set STAN=0)
call :count
exit /b 0

rem Only told: an engine may mend it, lose rows or refuse.
:check_damaged
call :title Baza uszkodzona, silnik %SILNIK%, %BITY% bity
copy /y bazy\Uszkodzona.mdb "%BAZY%" >nul
call :tell "%BITY%\jetcheck.exe" "%BAZY%\Uszkodzona.mdb"
call :tell "%Z%" sprawdz --baza "%BAZY%\Uszkodzona.mdb" --struktury struktury\faktury.stb %WYBOR%
fc /b bazy\Uszkodzona.mdb "%BAZY%\Uszkodzona.mdb" >nul 2>&1
if errorlevel 1 (set "OPIS=zmieniony") else (set "OPIS=taki sam jak przedtem")
>>"%RAPORT%" echo Plik: %OPIS%
call :tell "%BITY%\jetcheck.exe" "%BAZY%\Uszkodzona.mdb"
dir /b "%BAZY%\Uszkodzona*" >>"%RAPORT%"
exit /b 0

rem What the database holds, read by our own reader whichever engine made it.
:read_rows
"%BITY%\jetsql.exe" --read-only "%BAZY%\%1.mdb" ^
  "SELECT Indprg, VerMajor, VerMinor FROM dbprg ORDER BY Indprg" ^
  "SELECT Min(Rok) AS Pierwszy, Max(Rok) AS Ostatni, Count(*) AS Ile FROM dboko" ^
  "SELECT Indoso, Imie, Nazwisko FROM dboso ORDER BY Indoso" ^
  "SELECT Region, Count(*) AS Ile FROM KOPlacowki GROUP BY Region ORDER BY Region" ^
  "SELECT Count(*) AS Ile, Max(Opis) AS Ostatni FROM KOKontakty" ^
  "SELECT TOP 5 Symbol, Nazwa, IdGrupy, IdFormy, Rabat FROM KOKontrahenci ORDER BY IdKontrahenta" ^
  "SELECT Count(*) AS Ile, Sum(Netto) AS Razem, Max(DataWystawienia) AS Ostatni FROM FADokumenty" ^
  "SELECT Count(*) AS Ile, Sum(Netto) AS Razem FROM TOCeny" ^
  "SELECT Count(*) AS Ile, Max(NrEwidencyjny) AS Ostatni FROM PRPracownicy" ^
  >"%WYNIK%\wiersze.txt" 2>&1
set STAN=%errorlevel%
type "%WYNIK%\wiersze.txt" >>"%BAZY%\wiersze.txt"
>>"%RAPORT%" echo.
>>"%RAPORT%" echo $ jetsql %1.mdb
type "%WYNIK%\wiersze.txt" >>"%RAPORT%"
call :count
exit /b 0

rem --- the report ---

:title
>>"%RAPORT%" echo.
>>"%RAPORT%" echo ===== %*
exit /b 0

rem Carries out its words.
:step
>>"%RAPORT%" echo.
>>"%RAPORT%" echo $ %*
%* >>"%RAPORT%" 2>&1
set STAN=%errorlevel%
:count
if %STAN%==0 (set /a UDANE+=1) else (set /a NIEUDANE+=1)
if not %STAN%==0 >>"%RAPORT%" echo NIEUDANE, stan %STAN%
exit /b 0

rem Carries out its words, whatever comes of it.
:tell
>>"%RAPORT%" echo.
>>"%RAPORT%" echo $ %*
%* >>"%RAPORT%" 2>&1
>>"%RAPORT%" echo Stan %errorlevel%
exit /b 0

:skip
>>"%RAPORT%" echo %*
set /a BRAK+=1
exit /b 0
