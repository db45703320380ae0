<#
.SYNOPSIS
Puts files in place. "Quotes" mean nothing here.
#>
#Requires -Version 5
[CmdletBinding(SupportsShouldProcess = $true)]
param(
    [Parameter(Mandatory = $true)] [ValidateNotNullOrEmpty()]
    [string]$Path,
    [int[]]$Ports = @(80, 0xFF, 1.5e3, 10MB),
    [switch]$Force
)

Set-StrictMode -Version Latest
$ErrorActionPreference = 'Stop'
Import-Module "$PSScriptRoot\Tools.psm1"

function Get-Target {
    begin { $list = [System.Collections.ArrayList]::new() }
    process {
        foreach ($item in Get-ChildItem -Path $Path -Recurse | Where-Object { $_.Length -gt 10kb }) {
            if ($item.Name -like '*.txt' -and -not $Force) { continue }
            elseif ($item.Name -match "^(\d+)-`"(.*)`"$") { break }
            else { [void]$list.Add($item) }
            $text = "file $($item.Name.Replace("a", 'b')) in ${env:TEMP}: `t$($item.Length / 2) `$5"
        }
    }
    end { return ,$list }
}

$here = @"
Dear "$env:USERNAME", it's $(Get-Date -Format 'yyyy') and `n more
over lines
"@
$plain = @'
No $names, "quotes" and it's fine
'@
$double = "say ""yes"""; $single = 'it''s'
$table = @{ Name = 'x'; 'Full Name' = "y"; Count = 10 } # pairs

switch -Regex ($here) {
    '^a' { Write-Host "a" -ForegroundColor Red }
    default { Write-Output $_ }
}

try {
    Copy-Item $Path -Destination C:\Temp -ErrorAction Stop
    while ($true) { do { $i++ } until ($i -ge 5); break }
}
catch [System.IO.IOException] {
    Write-Error "failed: $($_.Exception.Message)"
    throw
}
finally {
    Remove-Item variable:text
}

enum Colour { Red; Green = 2 }
class Car : Vehicle { [string]$Name; Car([string]$n) { $this.Name = $n } static [int] Count() { return 1 } }
$result = 1..10 | ForEach-Object { $_ * 2 } | Sort-Object -Descending
$y=Get-Date;$z=1
$low = -1; $list[-1]
$x = $result -join ', ' -split ',' -replace 'a', 'b'
if ($x -ne $null -and $x.Length -le 5) { exit 1 }
"never closed
$hidden = 1
