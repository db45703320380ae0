@echo off
rem Saves files at night. "Quotes" and %names% mean nothing here.
REM
:: another remark with %%i
setlocal enabledelayedexpansion
set TARGET=C:\backup\%DATE:~0,4%
set "NAME=%~n0" & set COUNT=10
set /a TOTAL=%COUNT% * 2 + 0xFF

if "%~1"=="" goto usage
if not exist "%TARGET%" mkdir "%TARGET%" 2>nul
if /i "%1" equ "all" (
    call :save "%~dp0" *.txt
) else if defined NAME (
    call other.cmd %*
) else (
    echo Nothing to do ^& nothing done ^(yet^).
    goto :eof
)

for %%f in (*.c *.h) do (
    echo file "%%~nxf" in %CD%
    copy /y "%%f" "%TARGET%\" >nul || echo failed: %%f
)
for /f "tokens=1,2 delims=," %%a in ('type list.csv') do set LAST=%%a
for /l %%i in (1,1,10) do if %%i lss 5 echo %%i
findstr /i /c:"word" text.txt | sort > sorted.txt
if errorlevel 1 exit /b 1
remove.exe remark
echo 100%% done, it's fine!
pause
goto end

:save
echo saving %1 of %2
shift
dir /b /o:n %1
exit /b %ERRORLEVEL%

:usage
echo usage: %~nx0 directory
title Night save
cls
del /q *.tmp & rd /s /q "%TEMP%\x"
start "" http://localhost/
xcopy a b /s
net use z: \\server\share
ping -n 2 127.0.0.1
timeout /t 5
popd

:end
endlocal
echo "never closed
echo %NOT closed
set AFTER=1
