{ A clock. "Quotes" and 'marks' mean nothing here. }
program Clock;
{$mode objfpc}{$H+}
(* A long remark
   begin hidden end *)
uses
  SysUtils, Classes; // what it needs

const
  Limit = 1000;
  Mask = $FF;
  Small = 1.5e-3;
  Name = 'it''s a "clock"';
  Break2 = #13#10;
  Bits = %1010;

type
  THand = (hHour, hMinute);
  PClock = ^TClock;
  TMarks = set of Char;
  TClock = class(TObject)
  private
    FHours: Integer;
    FName: string;
    function GetHours: Integer;
  public
    constructor Create(const AName: string; AHours: Integer = 12); overload;
    destructor Destroy; override;
    procedure Tick(var Count: LongInt); virtual; abstract;
    property Hours: Integer read FHours write FHours default 12;
  end;
  TPoint = packed record
    X, Y: Double;
    case Boolean of
      True: (A: Byte);
      False: (B: array[0..9] of Word);
  end;

var
  Index: Integer;
  List: TStringList = nil;

constructor TClock.Create(const AName: string; AHours: Integer);
begin
  inherited Create;
  FName := AName + #9 + 'x' + ^M;
  FHours := AHours mod 12 + (5 div 2) shl 1;
end;

FUNCTION TClock.GetHours: Integer;
BEGIN
  Result := FHours;
  if (Result >= Limit) and not (Result <> 5) or (FName = '') then
    Exit
  else if 'a' in ['a'..'z', '''', '"'] then
    Dec(Result);
  while Result > 0 do Dec(Result, 2);
  repeat Inc(Result) until Result = 10;
  for Index := 1 to 10 do WriteLn('line ', Index:5, ' of ', Length(FName));
  for Index := 10 downto 1 do Continue;
  case Result of
    1, 2: Write('few');
    3..9: begin end;
  else
    raise Exception.Create('many');
  end;
  try
    List := TStringList.Create;
    with List do Add(Format('%d: %s', [Result, FName]));
  finally
    FreeAndNil(List);
  end;
END;

begin
  WriteLn('never closed);
  Index := 1; { open
  Hidden := 2;
